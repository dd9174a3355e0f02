#pragma once

#include <vector>

#include "settings/document_check.h"
#include "settings/settings_store.h"

namespace veltrix::ctl {

// The store as the terminal uses it: it changes only a file that is in order, and says what is wrong.
class TerminalStore : public SettingsStore {
 public:
  // Works on the user's file and the bundle's factory settings.
  TerminalStore();

  // Loads the document. 0, or the exit code to end with: an unusable file is left alone, because whoever
  // types a command can look at it first.
  int open();

  plist::Dictionary document() const { return fPrefsDict; }
  const std::string& path() const { return fPath; }

  // Makes `document` the user's settings, saves it and tells the helper. 0, or the exit code to end with.
  int saveInstead(const plist::Dictionary& document);

  // Saves the document and tells the helper. 0, or the exit code to end with.
  int save();

  // The same for a changed document, unless a rule forbids the change: then the file stays as it is.
  int saveIfAllowed();

  // Says why the last save failed and returns the exit code for it.
  int reportSaveError() const;

 private:
  std::string fPath;
  std::vector<DocumentProblem> fProblemsBefore;  // those that the document had when it was loaded
};

}  // namespace veltrix::ctl
