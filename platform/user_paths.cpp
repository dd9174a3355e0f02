#include "platform/user_paths.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "util/path_text.h"

namespace veltrix {

namespace {

// The absolute path in an environment variable; empty when it holds none.
std::string pathFromEnvironment(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && value[0] == '/' ? value : "";
}

std::string homeFromPasswordDatabase() {
  passwd entry = {};
  passwd* found = nullptr;
  std::vector<char> buffer(1024);
  while (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
    buffer.resize(buffer.size() * 2);
  }
  return found != nullptr && entry.pw_dir != nullptr && entry.pw_dir[0] == '/' ? entry.pw_dir : "";
}

}  // namespace

std::string homeDirectory() {
  std::string home = pathFromEnvironment("HOME");
  return withoutFinalSlashes(home.empty() ? homeFromPasswordDatabase() : home);
}

std::string configDirectory() {
  const std::string configured = pathFromEnvironment("XDG_CONFIG_HOME");
  if (!configured.empty()) {
    return withoutFinalSlashes(configured);
  }
  const std::string home = homeDirectory();
  if (home.empty()) {
    return "";
  }
  return home == "/" ? "/.config" : home + "/.config";
}

std::string abbreviatedPath(const std::string& path) {
  const std::string home = homeDirectory();
  const bool atHome = !home.empty() && home != "/" && path.starts_with(home);
  if (!atHome || (path.size() > home.size() && path[home.size()] != '/')) {
    return path;
  }
  return "~" + path.substr(home.size());
}

}  // namespace veltrix
