#include "settings/settings_store.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "helperlink/helper_protocol.h"
#include "platform/atomic_file.h"
#include "platform/property_list_io.h"
#include "settings/deep_copy.h"
#include "settings/entry_lookup.h"
#include "settings/settings_keys.h"
#include "settings/settings_merge.h"
#include "settings/settings_sort.h"
#include "settings/speed_table.h"

namespace veltrix {
namespace {

// Null for a file that cannot be read, is no property list, or whose root is no dictionary.
plist::Dictionary readDictionary(const std::string& path) {
  const auto document = plist::readFile(path);
  return document ? document.value().root.asDictionary() : plist::Dictionary();
}

// The array under `key`, put there when the document has none.
plist::Array arrayIn(plist::Dictionary document, const char* key) {
  auto array = document.arrayFor(key);
  if (!array) {
    array = plist::Array::create();
    document.set(key, array);
  }
  return array;
}

}  // namespace

struct SettingsStore::UserFile {
  plist::Dictionary document;  // null unless it may be used
  bool exists = false;
};

SettingsStore::SettingsStore(SettingsEnvironment environment) : fEnvironment(std::move(environment)) {}

SettingsStore::UserFile SettingsStore::readUserFile() const {
  const auto file = plist::readFile(fEnvironment.settingsPath);
  if (!file) {
    const int code = file.error().code;
    return {{}, code != ENOENT && code != ENOTDIR};
  }
  const auto document = file.value().root.asDictionary();
  return {isUsableDocument(document) ? document : plist::Dictionary(), true};
}

plist::Dictionary SettingsStore::newVTXPrefsFromFile() {
  auto factory = readDictionary(fEnvironment.defaultsPath);
  const UserFile user = readUserFile();
  fUnusableFileInPlace = user.exists && !user.document;
  if (!factory) {
    return user.document;
  }
  if (!user.document) {
    vtxSavePrefsToFile(factory);
    return factory;
  }
  mergeFactorySettings(user.document, factory);
  return user.document;
}

bool SettingsStore::vtxSavePrefsToFile(const plist::Dictionary& prefs) {
  const Status written = writeDocument(prefs);
  if (!written) {
    fSaveError = written.error();
    return false;
  }
  fSaveError.reset();
  if (fEnvironment.sendMessageToHelper) {
    fEnvironment.sendMessageToHelper(kSettingsChangedMessage);
  }
  return true;
}

Status SettingsStore::writeDocument(const plist::Dictionary& prefs) {
  const auto xml = plist::writeXml(prefs);
  if (!xml) {
    return xml.error();
  }
  if (fEnvironment.settingsPath.empty()) {
    return Error{ENOENT, "there is no home folder", {}};
  }
  return replaceFile(xml.value());
}

// An unusable file is moved away first. When the new one then cannot be written it is moved back: a failed
// save leaves everything as it was, and repeated failures do not pile up kept files.
Status SettingsStore::replaceFile(const std::string& bytes) {
  const std::string& path = fEnvironment.settingsPath;
  if (!fUnusableFileInPlace) {
    return writeFileAtomically(path, bytes);
  }
  const auto kept = keepRejectedFile(path);
  if (!kept && kept.error().code != ENOENT) {
    return kept.error();
  }
  Status written = writeFileAtomically(path, bytes);
  fUnusableFileInPlace = !written;
  if (!written && kept) {
    static_cast<void>(putRejectedFileBack(kept.value()));
  }
  return written;
}

bool SettingsStore::loadDocument() {
  const auto document = newVTXPrefsFromFile();
  if (!document) {
    return false;
  }
  fPrefsDict = document;
  fSettingsArray = arrayIn(document, keys::kDevices);
  fSnippetsArray = arrayIn(document, keys::kSnippets);
  vtxGetSettingsFromPrefs();
  return true;
}

void SettingsStore::vtxGetSettingsFromPrefs() {
  const std::size_t count = fSettingsArray.count();
  if (count == 0) {
    return;
  }
  if (fCurSettingsIndex < 0 || static_cast<std::size_t>(fCurSettingsIndex) >= count) {
    fCurSettingsIndex = 0;
  }
  fCurSettingsDict = fSettingsArray.at(static_cast<std::size_t>(fCurSettingsIndex)).asDictionary();
}

std::int32_t SettingsStore::vtxFindSettingsForDevice(std::uint16_t productId,
                                                     std::uint32_t* foundDeviceTab) const {
  const auto* connected = fEnvironment.connectedDevices ? fEnvironment.connectedDevices() : nullptr;
  const FoundEntry found = findEntryForDevices(fSettingsArray, connected, productId);
  if (foundDeviceTab != nullptr) {
    *foundDeviceTab = found.deviceTab;
  }
  return found.index;
}

void SettingsStore::vtxSortSettings() {
  sortWildcardEntriesFirst(fSettingsArray);
  const auto& entries = fSettingsArray.items();
  const auto isCurrent = [this](const plist::Value& element) {
    return fCurSettingsDict && element.asDictionary().sameAs(fCurSettingsDict);
  };
  const auto current = std::find_if(entries.begin(), entries.end(), isCurrent);
  fCurSettingsIndex = current == entries.end() ? -1 : static_cast<std::int32_t>(current - entries.begin());
}

std::int32_t SettingsStore::vtxSpeedSliderToDPI(std::uint32_t position) {
  return speedAtSlider(position);
}

std::int32_t SettingsStore::vtxDPIToSpeedSlider(std::int32_t dpi) {
  return sliderForSpeed(dpi);
}

bool SettingsStore::restoreDefaultEntry(std::int32_t index) {
  if (index < 0) {
    return false;
  }
  const auto place = static_cast<std::size_t>(index);
  const auto current = fSettingsArray.at(place).asDictionary();
  const auto factoryEntries = readDictionary(fEnvironment.defaultsPath).arrayFor(keys::kDevices);
  const auto restored = mutableDeepAutoreleasedCopy(findEntryOfSameIds(factoryEntries, current));
  if (!current || !restored) {
    return false;
  }
  fSettingsArray.replace(place, restored);
  vtxSavePrefsToFile(fPrefsDict);
  vtxGetSettingsFromPrefs();
  return true;
}

}  // namespace veltrix
