#include "ctl/terminal_store.h"

#include <algorithm>

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
  if (!loadDocument()) {
    return fail(kNotFound, fPath + ": could not be read again; nothing was changed");
  }
  fProblemsBefore = checkSettingsDocument(fPrefsDict);
  return kDone;
}

int TerminalStore::saveInstead(const plist::Dictionary& document) {
  fPrefsDict = document;
  return save();
}

int TerminalStore::saveIfAllowed() {
  const auto& before = fProblemsBefore;
  for (const auto& problem : checkSettingsDocument(fPrefsDict)) {
    if (std::find(before.begin(), before.end(), problem) == before.end()) {
      return fail(kNotFound, fPath + ": " + problem.place + ": " + problem.reason + "; nothing was changed");
    }
  }
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
