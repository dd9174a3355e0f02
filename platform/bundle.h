#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/property_list.h"

namespace veltrix {

class StringTables;

// The string table that holds every text of the programs.
inline constexpr const char* kStringTable = "Localizable";

// The folder that carries a program's resources: property lists, localised texts, the helper application.
// Copies share what has been read. Looking up texts is thread-safe.
class Bundle {
 public:
  explicit Bundle(std::string resourcePath);

  // The folder named by the environment variable VELTRIX_RESOURCES, else the one beside this program, else
  // the installed one.
  static Bundle standard();

  const std::string& resourcePath() const { return fResourcePath; }

  // The path of the resource "NAME.TYPE"; empty when there is none. Folders count too.
  std::string pathForResource(std::string_view name, std::string_view type) const;

  // A value of the bundle's Info.plist; missing when there is no such key or file.
  plist::Value infoValue(std::string_view key) const;

  // The text of `key` in the string table `table` for the user's language; without one the English text;
  // without that `value`, or the key itself when `value` is empty.
  std::string localizedString(std::string_view key, std::string_view value, std::string_view table) const;

 private:
  std::string fResourcePath;
  plist::Dictionary fInfo;
  std::shared_ptr<StringTables> fStrings;
};

}  // namespace veltrix
