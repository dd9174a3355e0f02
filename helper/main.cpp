#include <clocale>
#include <cstdio>
#include <string>
#include <vector>

#include "helper/helper_program.h"
#include "helper/version.h"

namespace {

// The keeper first, while there is nothing in memory that it would keep as well.
int run(const veltrix::HelperOptions& options, const std::vector<std::string>& words) {
  if (!options.isKept)
    return veltrix::runHelper(options, nullptr);
  const veltrix::Result<veltrix::Keeper> keeper = veltrix::Keeper::start(words);
  if (!keeper)
    std::fprintf(stderr, "VeltrixHelper: %s; going on without one\n", keeper.error().message.c_str());
  return veltrix::runHelper(options, keeper ? &keeper.value() : nullptr);
}

}  // namespace

int main(int argumentCount, char** arguments) {
  std::setlocale(LC_MESSAGES, "");
  const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
  const veltrix::HelperOptions options = veltrix::parseHelperOptions(words);
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
  return run(options, words);
}
