#include "platform/bundle.h"

#include <cstdlib>
#include <filesystem>
#include <utility>

#include "platform/property_list_io.h"
#include "platform/resource_folder.h"
#include "platform/string_tables.h"

namespace veltrix {

namespace {

plist::Dictionary readInfo(const std::string& folder) {
  const Result<plist::Document> document = plist::readFile(folder + "/Info.plist");
  return document ? document.value().root.asDictionary() : plist::Dictionary();
}

}  // namespace

Bundle::Bundle(std::string resourcePath)
    : fResourcePath(std::move(resourcePath)),
      fInfo(readInfo(fResourcePath)),
      fStrings(std::make_shared<StringTables>(fResourcePath + "/locale")) {}

Bundle Bundle::standard() {
  return Bundle(standardResourceFolder());
}

std::string Bundle::pathForResource(std::string_view name, std::string_view type) const {
  std::string path = fResourcePath + "/" + std::string(name);
  if (!type.empty()) {
    path += "." + std::string(type);
  }
  std::error_code ignored;
  return !name.empty() && std::filesystem::exists(path, ignored) ? path : "";
}

plist::Value Bundle::infoValue(std::string_view key) const {
  return fInfo.get(key);
}

std::string Bundle::localizedString(std::string_view key, std::string_view value,
                                    std::string_view table) const {
  if (auto text = fStrings->find(key, table)) {
    return *text;
  }
  return std::string(value.empty() ? key : value);
}

}  // namespace veltrix
