#include "helper/helper_options.h"

#include <string_view>

namespace veltrix {

namespace {

constexpr std::string_view kSimulate = "--simulate";
constexpr std::string_view kDriverSocket = "--driver-socket";

// An option with a value, as the next argument or behind "=".
class OptionValue {
 public:
  // Whether arguments[*index] is this option; goes on to its value.
  bool read(std::string_view option, const std::vector<std::string>& arguments, std::size_t* index) {
    const std::string_view argument = arguments[*index];
    if (argument == option) {
      isMissing = *index + 1 == arguments.size();
      value = isMissing ? std::string_view() : arguments[++*index];
      return true;
    }
    if (argument.substr(0, option.size()) != option || argument.substr(option.size(), 1) != "=")
      return false;
    value = argument.substr(option.size() + 1);
    return true;
  }

  bool isMissing = false;
  std::string_view value;
};

HelperOptions refuse(std::string error) {
  HelperOptions options;
  options.action = HelperOptions::Action::kRefuse;
  options.error = std::move(error);
  return options;
}

}  // namespace

const char* const kHelperUsage =
    "usage: VeltrixHelper [--simulate DEVICES] [--driver-socket PATH] [--no-keeper]\n"
    "\n"
    "Knows the connected trackballs, applies the settings to them and answers the settings window.\n"
    "Runs once in each session, until it gets SIGTERM or SIGINT.\n"
    "\n"
    "  --simulate DEVICES  simulated trackballs instead of the real ones: VENDOR:PRODUCT:VERSION in\n"
    "                      hexadecimal, separated by commas (A1D0:2041:0107,A1D0:1020:0100); may be empty\n"
    "  --driver-socket PATH  where the driver listens; without it the installed one, and with simulated\n"
    "                        trackballs none\n"
    "  --no-keeper           start no second process that starts the helper anew when it is killed\n"
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
    if (argument == "--no-keeper") {
      options.isKept = false;
      continue;
    }
    OptionValue option;
    if (option.read(kSimulate, arguments, &i)) {
      if (option.isMissing)
        return refuse("--simulate needs the devices to simulate");
      options.simulated = parseSimulatedDevices(option.value);
      if (!options.simulated)
        return refuse("\"" + std::string(option.value) + "\" is not VENDOR:PRODUCT:VERSION[,...]");
    } else if (option.read(kDriverSocket, arguments, &i)) {
      if (option.value.empty())
        return refuse("--driver-socket needs the path of the driver's socket");
      options.driverSocket = option.value;
    } else {
      return refuse("unknown option \"" + arguments[i] + "\"");
    }
  }
  return options;
}

}  // namespace veltrix
