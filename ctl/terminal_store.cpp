#include "ctl/terminal_store.h"

#include "ctl/document_file.h"
#include "ctl/outcome.h"
#include "platform/bundle.h"

namespace veltrix::ctl {

TerminalStore::TerminalStore()
    : SettingsStore(
          standardSettingsEnvironment(Bundle::standard().pathForResource("DefaultSettings", "plist"), {})),
      fPath(settingsFilePath()) {}

int TerminalStore::open() {
  const auto current = readCurrentSettings("nothing was changed");
  if (!current.document) {
    return current.exitCode;
  }
  return loadDocument() ? kDone : fail(kNotFound, fPath + ": could not be read again; nothing was changed");
}

int TerminalStore::saveInstead(const plist::Dictionary& document) {
  fPrefsDict = document;
  return save();
}

int TerminalStore::save() {
  return vtxSavePrefsToFile(fPrefsDict) ? kDone : reportSaveError();
}

int TerminalStore::reportSaveError() const {
  const std::string reason = saveError() ? saveError()->message : "the settings could not be written";
  return fail(kNotFound, about(fPath, reason) + "; the file is as it was");
}

}  // namespace veltrix::ctl
