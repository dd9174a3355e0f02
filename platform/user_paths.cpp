#include "platform/user_paths.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

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

std::vector<std::string> colonList(std::string_view text) {
  std::vector<std::string> items;
  while (!text.empty()) {
    const std::string_view item = text.substr(0, text.find(':'));
    if (!item.empty()) {
      items.emplace_back(item);
    }
    text.remove_prefix(item.size() == text.size() ? text.size() : item.size() + 1);
  }
  return items;
}

std::vector<std::string> absoluteFolders(std::string_view text) {
  std::vector<std::string> folders;
  for (const std::string& item : colonList(text)) {
    if (item.starts_with('/')) {
      folders.push_back(withoutFinalSlashes(item));
    }
  }
  return folders;
}

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

std::vector<std::string> configDirectories() {
  std::vector<std::string> folders;
  if (std::string own = configDirectory(); !own.empty()) {
    folders.push_back(std::move(own));
  }
  const char* const shared = std::getenv("XDG_CONFIG_DIRS");
  const bool isSet = shared != nullptr && *shared != '\0';
  const auto others = absoluteFolders(isSet ? shared : "/etc/xdg");
  folders.insert(folders.end(), others.begin(), others.end());
  return folders;
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
