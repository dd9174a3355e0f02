#include <cstdio>
#include <string>
#include <vector>

#include "driver/driver_program.h"
#include "driver/version.h"

int main(int argumentCount, char** arguments) {
  using Action = veltrix::DriverOptions::Action;
  const veltrix::DriverOptions options =
      veltrix::parseDriverOptions(std::vector<std::string>(arguments + 1, arguments + argumentCount));
  switch (options.action) {
    case Action::kShowHelp:
      std::fputs(veltrix::kDriverUsage, stdout);
      return veltrix::kExitDone;
    case Action::kShowVersion:
      std::printf("veltrix-driver %s\n", veltrix::kDriverVersion);
      return veltrix::kExitDone;
    case Action::kRefuse:
      std::fprintf(stderr, "veltrix-driver: %s\nTry --help.\n", options.error.c_str());
      return veltrix::kExitUsage;
    case Action::kRun:
      break;
  }
  return veltrix::runDriver(options);
}
