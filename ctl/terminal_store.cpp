#include "ctl/terminal_store.h"

#include <cerrno>

#include "ctl/document_file.h"
#include "ctl/outcome.h"
#include "platform/bundle.h"
#include "settings/settings_merge.h"

namespace veltrix::ctl {

TerminalStore::TerminalStore()
    : SettingsStore(
          standardSettingsEnvironment(Bundle::standard().pathForResource("DefaultSettings", "plist"), {})),
      fPath(settingsFilePath()) {}

int TerminalStore::open() {
  if (fPath.empty()) {
    return fail(kNotFound, "there is no home folder to keep the settings in");
  }
  const auto current = plist::readFile(fPath);
  const bool isMissing = !current && current.error().code == ENOENT;
  if (!isMissing) {
    const auto file = readSettings(fPath);
    if (!file.document) {
      return file.exitCode;
    }
    if (!isUsableDocument(file.root())) {
      return fail(kBadInput, fPath +
                                 ": \"version\" must be above 1 and \"devices\" must not be empty; "
                                 "nothing was changed");
    }
  }
  if (!loadDocument()) {
    return fail(kNotFound, fPath + ": there are no settings and no factory settings to begin with");
  }
  return kDone;
}

int TerminalStore::save() {
  return vtxSavePrefsToFile(fPrefsDict) ? kDone : reportSaveError();
}

int TerminalStore::reportSaveError() const {
  const std::string reason = saveError() ? saveError()->message : "the settings could not be written";
  return fail(kNotFound, about(fPath, reason) + "; the file is as it was");
}

}  // namespace veltrix::ctl
