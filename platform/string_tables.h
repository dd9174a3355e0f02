#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/message_catalog.h"

namespace veltrix {

// Localised texts from gettext catalogues at FOLDER/<language>/LC_MESSAGES/<table>.mo. The language is the
// one of the process's locale, which the program sets at its start (setlocale); nothing here changes it.
// Thread-safe.
class StringTables {
 public:
  explicit StringTables(std::string folder) : fFolder(std::move(folder)) {}

  // The UTF-8 text of `key` in the user's language, else in English; none when neither has it.
  std::optional<std::string> find(std::string_view key, std::string_view table);

 private:
  std::optional<std::string> findInEnglish(const std::string& key, const std::string& table);

  std::string fFolder;
  std::mutex fMutex;
  std::map<std::string, MessageCatalog> fEnglish;  // by table
};

}  // namespace veltrix
