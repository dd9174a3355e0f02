#include "platform/string_tables.h"

#include <libintl.h>

#include <fstream>
#include <iterator>

namespace veltrix {

namespace {

// gettext keeps one folder for each table in the whole process, so that binding and looking up must not be
// torn apart by a second bundle.
std::mutex& bindingMutex() {
  static std::mutex mutex;
  return mutex;
}

std::optional<std::string> findInUsersLanguage(const std::string& key, const std::string& table,
                                               const std::string& folder) {
  const std::lock_guard lock(bindingMutex());
  bindtextdomain(table.c_str(), folder.c_str());
  bind_textdomain_codeset(table.c_str(), "UTF-8");
  const char* text = dgettext(table.c_str(), key.c_str());
  // A key without a text comes back as the very same pointer.
  return text != key.c_str() ? std::optional<std::string>(text) : std::nullopt;
}

MessageCatalog readCatalog(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return MessageCatalog::read(std::string(std::istreambuf_iterator<char>(file), {}));
}

}  // namespace

std::optional<std::string> StringTables::find(std::string_view key, std::string_view table) {
  if (key.empty() || table.empty() || key.find('\0') != std::string_view::npos) {
    return {};
  }
  const std::string keyText(key);
  const std::string tableText(table);
  auto text = findInUsersLanguage(keyText, tableText, fFolder);
  return text ? text : findInEnglish(keyText, tableText);
}

// gettext can be asked for one language only, the user's, and under the C locale for none; so the English
// catalogue is read here.
std::optional<std::string> StringTables::findInEnglish(const std::string& key, const std::string& table) {
  const std::lock_guard lock(fMutex);
  auto catalog = fEnglish.find(table);
  if (catalog == fEnglish.end()) {
    const std::string path = fFolder + "/en/LC_MESSAGES/" + table + ".mo";
    catalog = fEnglish.emplace(table, readCatalog(path)).first;
  }
  return catalog->second.find(key);
}

}  // namespace veltrix
