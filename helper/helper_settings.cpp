#include "helper/helper_settings.h"

#include <cerrno>

#include "platform/property_list_io.h"
#include "settings/settings_keys.h"

namespace veltrix {

namespace {

std::string describe(const std::string& path, const Error& error) {
  std::string text = path + ": " + error.message;
  if (error.offset)
    text += " at byte " + std::to_string(*error.offset);
  return text;
}

bool meansNoFile(const Error& error) {
  return error.code == ENOENT || error.code == ENOTDIR;
}

}  // namespace

Result<HelperSettings::Contents> HelperSettings::contentsOf(const std::string& path) {
  const Result<plist::Document> document = plist::readFile(path);
  if (!document)
    return document.error();
  const plist::Dictionary root = document.value().root.asDictionary();
  if (!root)
    return Error{0, "the document is no dictionary", std::nullopt};
  return Contents{root.arrayFor(keys::kDevices), root.arrayFor(keys::kSnippets)};
}

void HelperSettings::reread() {
  fError.clear();
  Result<Contents> contents = contentsOf(fUserPath);
  if (contents) {
    fContents = contents.value();
    fInForce = SettingsInForce::kUser;
    return;
  }
  if (!meansNoFile(contents.error()))
    fError = describe(fUserPath, contents.error());
  if (meansNoFile(contents.error()) || fInForce == SettingsInForce::kNone)
    useFactorySettings();
}

void HelperSettings::useFactorySettings() {
  Result<Contents> contents = contentsOf(fFactoryPath);
  if (contents) {
    fContents = contents.value();
    fInForce = SettingsInForce::kFactory;
  } else {
    if (!fError.empty())
      fError += "; ";
    fError +=
        fFactoryPath.empty() ? "there are no factory settings" : describe(fFactoryPath, contents.error());
  }
}

}  // namespace veltrix
