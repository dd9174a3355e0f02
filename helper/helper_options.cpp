#include "helper/helper_options.h"

#include <string_view>

namespace veltrix {

namespace {

constexpr std::string_view kSimulate = "--simulate";

HelperOptions refuse(std::string error) {
  HelperOptions options;
  options.action = HelperOptions::Action::kRefuse;
  options.error = std::move(error);
  return options;
}

}  // namespace

const char* const kHelperUsage =
    "usage: VeltrixHelper [--simulate DEVICES]\n"
    "\n"
    "Knows the connected trackballs, applies the settings to them and answers the settings window.\n"
    "Runs once in each session, until it gets SIGTERM or SIGINT.\n"
    "\n"
    "  --simulate DEVICES  simulated trackballs instead of the real ones: VENDOR:PRODUCT:VERSION in\n"
    "                      hexadecimal, separated by commas (A1D0:2041:0107,A1D0:1020:0100); may be empty\n"
    "  --help              show this text\n"
    "  --version           show the version\n"
    "\n"
    "Exit status: 0 ended as asked, or another helper is running already; 1 cannot start; 2 bad usage;\n"
    "3 there is no session bus, or it has gone.\n";

HelperOptions parseHelperOptions(const std::vector<std::string>& arguments) {
  HelperOptions options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      options.action = HelperOptions::Action::kShowHelp;
      return options;
    }
    if (argument == "--version") {
      options.action = HelperOptions::Action::kShowVersion;
      return options;
    }
    std::string_view devices;
    if (argument == kSimulate) {
      if (++i == arguments.size())
        return refuse("--simulate needs the devices to simulate");
      devices = arguments[i];
    } else if (argument.substr(0, kSimulate.size() + 1) == "--simulate=") {
      devices = argument.substr(kSimulate.size() + 1);
    } else {
      return refuse("unknown option \"" + arguments[i] + "\"");
    }
    options.simulated = parseSimulatedDevices(devices);
    if (!options.simulated) {
      return refuse("\"" + std::string(devices) + "\" is not VENDOR:PRODUCT:VERSION[,...]");
    }
  }
  return options;
}

}  // namespace veltrix
