#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "helperlink/device_list.h"
#include "platform/property_list.h"
#include "util/result.h"

namespace veltrix {

// Where a store finds its files and how it reaches the rest of the system. Every member may be empty.
struct SettingsEnvironment {
  std::string settingsPath;  // the user's file
  std::string defaultsPath;  // the factory settings
  std::function<const VeltrixDeviceList*()> connectedDevices;
  std::function<std::int32_t(std::uint32_t)> sendMessageToHelper;
};

// The settings file of this user; empty without a home folder.
std::string settingsFilePath();

// The environment of a program that is not under test: the user's file, the bundle's factory settings, the
// helper.
SettingsEnvironment standardSettingsEnvironment(std::string defaultsPath,
                                                std::function<const VeltrixDeviceList*()> connectedDevices);

// Owns the settings document in memory: loads it, merges it with the factory settings, chooses the entry of
// the connected trackball, saves it and tells the helper. Not thread-safe.
class SettingsStore {
 public:
  explicit SettingsStore(SettingsEnvironment environment);
  virtual ~SettingsStore() = default;
  SettingsStore(const SettingsStore&) = delete;
  SettingsStore& operator=(const SettingsStore&) = delete;

  // Reads the user's file and merges the factory settings into it; without a usable user file the factory
  // settings, which then replace it on disk (the unusable file is kept beside them). Null when there is
  // neither. When the disk takes no file, the factory settings are returned all the same and the user's file
  // stays where it is; the next save that succeeds keeps it aside.
  plist::Dictionary newVTXPrefsFromFile();

  // Writes the document atomically as XML and, only after success, tells the helper. On failure the file is
  // as it was and nothing is sent.
  bool vtxSavePrefsToFile(const plist::Dictionary& prefs);

  // Why the last save failed; nothing after one that did not.
  const std::optional<Error>& saveError() const { return fSaveError; }

  // Loads the document and takes its "devices" and "snippets" (created when missing), then chooses the
  // current entry. False, with nothing changed, when there is no document.
  bool loadDocument();

  // Takes the entry at the current index as the current one, the first entry when there is none at that
  // index; nothing without entries.
  void vtxGetSettingsFromPrefs();
  plist::Array vtxGetSettingsArray() const { return fSettingsArray; }

  // The index of the first entry that fits a connected device, 0 when none does. `productId` (0 for none) is
  // preferred when two or more devices are connected. `foundDeviceTab` (may be null) receives the device's
  // page, or 1.
  std::int32_t vtxFindSettingsForDevice(std::uint16_t productId, std::uint32_t* foundDeviceTab) const;

  // Counts the device pages from 0; negative without one.
  std::int32_t vtxCurDeviceTabIndex() const { return fCurDeviceTab - 2; }

  // Moves wildcard entries to the front and finds the current entry again; -1 when it is not among them.
  void vtxSortSettings();

  // See settings/speed_table.h.
  static std::int32_t vtxSpeedSliderToDPI(std::uint32_t position);
  static std::int32_t vtxDPIToSpeedSlider(std::int32_t dpi);

  // Puts a copy of the matching factory entry in place of entry `index` and saves. False, with nothing
  // changed, when the factory settings cannot be read or hold no entry of the same ids; a failed save does
  // not count as failure.
  bool restoreDefaultEntry(std::int32_t index);

 protected:
  plist::Dictionary fPrefsDict;
  plist::Array fSettingsArray;
  plist::Array fSnippetsArray;
  std::int32_t fCurSettingsIndex = -1;
  plist::Dictionary fCurSettingsDict;
  std::int32_t fCurDeviceTab = 1;

 private:
  struct UserFile;

  UserFile readUserFile() const;
  Status writeDocument(const plist::Dictionary& prefs);
  Status replaceFile(const std::string& bytes);

  SettingsEnvironment fEnvironment;
  std::optional<Error> fSaveError;
  bool fUnusableFileInPlace = false;  // to be kept aside before anything is written over it
};

}  // namespace veltrix
