#include "platform/application_search.h"

#include <clocale>
#include <cstdlib>
#include <string_view>

#include "platform/user_paths.h"
#include "util/path_text.h"

namespace veltrix {

namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

// The items of a text that colons divide, without empty ones.
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

// Relative folders would mean something else wherever the process happens to stand.
std::vector<std::string> absoluteFolders(std::string_view text) {
  std::vector<std::string> folders;
  for (const std::string& item : colonList(text)) {
    if (item.starts_with('/')) {
      folders.push_back(withoutFinalSlashes(item));
    }
  }
  return folders;
}

std::string userDataFolder() {
  const std::string configured = environment("XDG_DATA_HOME");
  if (configured.starts_with('/')) {
    return withoutFinalSlashes(configured);
  }
  const std::string home = homeDirectory();
  return home.empty() ? "" : (home == "/" ? "" : home) + "/.local/share";
}

std::vector<std::string> applicationFolders() {
  std::vector<std::string> folders;
  const std::string own = userDataFolder();
  if (!own.empty()) {
    folders.push_back(own);
  }
  const std::string configured = environment("XDG_DATA_DIRS");
  const auto shared = absoluteFolders(configured.empty() ? "/usr/local/share:/usr/share" : configured);
  folders.insert(folders.end(), shared.begin(), shared.end());
  for (std::string& folder : folders) {
    folder += folder == "/" ? "applications" : "/applications";
  }
  return folders;
}

// As other programs choose the language of their messages: a list of preferences counts unless the locale
// says that nothing is to be translated.
std::string messageLanguage() {
  const char* const set = std::setlocale(LC_MESSAGES, nullptr);
  const std::string locale = set != nullptr ? set : "C";
  if (locale == "C" || locale == "POSIX") {
    return "";
  }
  const std::vector<std::string> preferred = colonList(environment("LANGUAGE"));
  return preferred.empty() ? locale : preferred.front();
}

}  // namespace

ApplicationSearch standardApplicationSearch() {
  ApplicationSearch search;
  search.folders = applicationFolders();
  search.programs = absoluteFolders(environment("PATH"));
  search.desktops = colonList(environment("XDG_CURRENT_DESKTOP"));
  search.language = messageLanguage();
  return search;
}

}  // namespace veltrix
