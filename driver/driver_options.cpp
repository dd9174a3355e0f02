#include "driver/driver_options.h"

#include <charconv>
#include <limits>
#include <string_view>

namespace veltrix {

namespace {

using Action = DriverOptions::Action;

DriverOptions refuse(std::string error) {
  DriverOptions options;
  options.action = Action::kRefuse;
  options.error = std::move(error);
  return options;
}

// The largest number stands for nobody.
std::optional<uid_t> userOf(std::string_view text) {
  uid_t user = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), user);
  if (error != std::errc() || end != text.data() + text.size() || user == std::numeric_limits<uid_t>::max())
    return std::nullopt;
  return user;
}

// The value of an option in either spelling, "--name VALUE" or "--name=VALUE". Nothing when it is another
// option; null when there is no value.
std::optional<const char*> valueOf(std::string_view name, const std::vector<std::string>& arguments,
                                   std::size_t* index) {
  const std::string& argument = arguments[*index];
  if (argument == name)
    return ++*index < arguments.size() ? arguments[*index].c_str() : nullptr;
  if (argument.size() > name.size() && argument.compare(0, name.size(), name) == 0 &&
      argument[name.size()] == '=') {
    return argument.c_str() + name.size() + 1;
  }
  return std::nullopt;
}

}  // namespace

const char* const kDriverUsage =
    "usage: veltrix-driver [--socket PATH] [--user UID]\n"
    "\n"
    "Takes the trackballs that are plugged in and makes of their movement and buttons what the settings of "
    "the\n"
    "user at the screen say, through a virtual pointer and keyboard. Without a helper that tells it the\n"
    "settings it leaves every trackball alone. Runs until it gets SIGTERM or SIGINT; is usually started by "
    "the\n"
    "service manager.\n"
    "\n"
    "  --socket PATH  where to listen for the helper when the service manager has passed no socket\n"
    "                 (/run/veltrix/driver.sock)\n"
    "  --user UID     serve this user instead of the one at the screen, for machines without a login "
    "service\n"
    "  --help         show this text\n"
    "  --version      show the version\n"
    "\n"
    "Exit status: 0 ended as asked; 1 cannot start, or cannot go on; 2 bad usage.\n";

DriverOptions parseDriverOptions(const std::vector<std::string>& arguments) {
  DriverOptions options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") {
      options.action = Action::kShowHelp;
      return options;
    }
    if (argument == "--version") {
      options.action = Action::kShowVersion;
      return options;
    }
    if (const auto socket = valueOf("--socket", arguments, &i)) {
      if (*socket == nullptr || **socket == '\0')
        return refuse("--socket needs a path");
      options.socketPath = *socket;
    } else if (const auto user = valueOf("--user", arguments, &i)) {
      options.user = *user != nullptr ? userOf(*user) : std::nullopt;
      if (!options.user)
        return refuse("--user needs the number of a user");
    } else {
      return refuse("unknown option \"" + argument + "\"");
    }
  }
  return options;
}

}  // namespace veltrix
