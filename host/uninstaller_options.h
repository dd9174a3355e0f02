#pragma once

#include <optional>
#include <string>
#include <vector>

namespace veltrix {

// What the uninstaller's command line asks for.
struct UninstallerOptions {
  bool help = false;
  bool yes = false;  // without a window and a question
  bool removeSettings = false;
};

// Nothing, with the reason in `problem`, for arguments that mean nothing. `arguments` are those behind the
// program's name.
std::optional<UninstallerOptions> parseUninstallerOptions(const std::vector<std::string>& arguments,
                                                          std::string* problem);

}  // namespace veltrix
