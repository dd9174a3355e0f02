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
