#include "host/uninstaller_options.h"

namespace veltrix {

std::optional<UninstallerOptions> parseUninstallerOptions(const std::vector<std::string>& arguments,
                                                          std::string* problem) {
  UninstallerOptions options;
  for (const std::string& argument : arguments) {
    if (argument == "--help" || argument == "-h") {
      options.help = true;
    } else if (argument == "--yes") {
      options.yes = true;
    } else if (argument == "--remove-settings") {
      options.removeSettings = true;
    } else {
      *problem = "\"" + argument + "\" means nothing here";
      return std::nullopt;
    }
  }
  return options;
}

}  // namespace veltrix
