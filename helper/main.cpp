#include <cstdio>
#include <string>
#include <vector>

#include "helper/helper_program.h"
#include "helper/version.h"

int main(int argumentCount, char** arguments) {
  const veltrix::HelperOptions options =
      veltrix::parseHelperOptions(std::vector<std::string>(arguments + 1, arguments + argumentCount));
  switch (options.action) {
    case veltrix::HelperOptions::Action::kShowHelp:
      std::fputs(veltrix::kHelperUsage, stdout);
      return veltrix::kExitDone;
    case veltrix::HelperOptions::Action::kShowVersion:
      std::printf("VeltrixHelper %s\n", veltrix::kHelperVersion);
      return veltrix::kExitDone;
    case veltrix::HelperOptions::Action::kRefuse:
      std::fprintf(stderr, "VeltrixHelper: %s\nTry --help.\n", options.error.c_str());
      return veltrix::kExitUsage;
    case veltrix::HelperOptions::Action::kRun:
      break;
  }
  return veltrix::runHelper(options);
}
