#include "helper/helper_settings.h"

#include <cerrno>

#include "platform/property_list_io.h"
#include "settings/settings_keys.h"

namespace veltrix {

namespace {

Result<plist::Array> entriesIn(const std::string& path) {
  const Result<plist::Document> document = plist::readFile(path);
  if (!document)
    return document.error();
  const plist::Dictionary root = document.value().root.asDictionary();
  if (!root)
    return Error{0, "the document is no dictionary", std::nullopt};
  return root.arrayFor(keys::kDevices);
}

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

void HelperSettings::reread() {
  fError.clear();
  Result<plist::Array> entries = entriesIn(fUserPath);
  if (entries) {
    fEntries = entries.value();
    fInForce = SettingsInForce::kUser;
    return;
  }
  if (!meansNoFile(entries.error()))
    fError = describe(fUserPath, entries.error());
  if (meansNoFile(entries.error()) || fInForce == SettingsInForce::kNone)
    useFactorySettings();
}

void HelperSettings::useFactorySettings() {
  Result<plist::Array> entries = entriesIn(fFactoryPath);
  if (entries) {
    fEntries = entries.value();
    fInForce = SettingsInForce::kFactory;
  } else {
    if (!fError.empty())
      fError += "; ";
    fError +=
        fFactoryPath.empty() ? "there are no factory settings" : describe(fFactoryPath, entries.error());
  }
}

}  // namespace veltrix
