#include "settings/settings_rules.h"

#include <algorithm>
#include <array>

#include "settings/button_key.h"
#include "settings/command_classes.h"
#include "settings/settings_keys.h"

namespace keys = veltrix::keys;
using veltrix::plist::Array;
using veltrix::plist::Dictionary;

namespace {

constexpr int kIdScore = 100;

// The identity of one entry, in the 16 bits that a device reports.
struct EntryIds {
  std::uint16_t vendor;
  std::uint16_t product;
  std::uint16_t versionMin;
  std::uint16_t versionMax;

  explicit EntryIds(const Dictionary& entry)
      : vendor(entry.uint16For(keys::kVendorId)),
        product(entry.uint16For(keys::kProductId)),
        versionMin(entry.uint16For(keys::kVersionMin)),
        versionMax(entry.uint16For(keys::kVersionMax)) {}

  bool isGlobal() const { return vendor == 0 && product == 0 && versionMin == 0 && versionMax == 0; }

  // 100 for each id that names this device; -1 when the entry is for other devices.
  int scoreFor(std::uint16_t vendorId, std::uint16_t productId, std::uint16_t version) const {
    const bool otherVendor = vendor != 0 && vendor != vendorId;
    const bool otherProduct = product != 0 && product != productId;
    const bool tooOld = versionMin != 0 && version < versionMin;
    const bool tooNew = versionMax != 0 && version > versionMax;
    if (otherVendor || otherProduct || tooOld || tooNew) {
      return -1;
    }
    return (vendor != 0 ? kIdScore : 0) + (product != 0 ? kIdScore : 0);
  }
};

bool isPlainPrimaryClick(const Dictionary& action) {
  return action && action.uint32For(keys::kCommand) == veltrix::kPrimaryClickCommand &&
         action.uint32For(keys::kModifiers) == 0;
}

}  // namespace

bool VeltrixValidateSettings(const Dictionary& entry) {
  constexpr std::array kRequired = {keys::kDriverEnabled, keys::kDictVersion, keys::kVendorId,
                                    keys::kProductId,     keys::kVersionMin,  keys::kVersionMax,
                                    keys::kButtons,       keys::kOptions};
  return std::all_of(kRequired.begin(), kRequired.end(),
                     [&](const char* key) { return entry.contains(key); });
}

bool VeltrixSettingsAreGlobal(const Dictionary& entry) {
  constexpr std::array kIds = {keys::kVendorId, keys::kProductId, keys::kVersionMin, keys::kVersionMax};
  return std::all_of(kIds.begin(), kIds.end(), [&](const char* key) { return entry.uint32For(key) == 0; });
}

std::int32_t VeltrixFindClickInSettings(const Dictionary& entry, std::int32_t first, std::int32_t last,
                                        std::int32_t excluded) {
  const Dictionary buttons = entry.dictionaryFor(keys::kButtons);
  if (!buttons) {
    return -1;
  }
  // Counted in 64 bits: a last button at the type's limit must not make the count start over.
  for (std::int64_t wide = first; wide <= last; ++wide) {
    const auto button = static_cast<std::int32_t>(wide);
    if (button != excluded && isPlainPrimaryClick(buttons.dictionaryFor(veltrix::buttonKey(button)))) {
      return button;
    }
  }
  return -1;
}

bool VeltrixMatchAppPrefs(const Array& devices, const void* /*unused1*/, const void* /*unused2*/,
                          std::uint16_t vendorId, std::uint16_t productId, std::uint16_t productVersion,
                          std::int32_t* bestIndex, std::int32_t* globalIndex) {
  std::int32_t best = -1;
  std::int32_t global = -1;
  int bestScore = 0;
  std::int32_t index = -1;
  for (const auto& element : devices.items()) {
    ++index;
    const Dictionary entry = element.asDictionary();
    if (!entry) {
      continue;
    }
    const EntryIds ids(entry);
    const int score = ids.scoreFor(vendorId, productId, productVersion);
    if (ids.isGlobal() && global < 0) {
      global = index;
    }
    if (score > bestScore) {
      best = index;
      bestScore = score;
    }
  }
  if (bestIndex != nullptr) {
    *bestIndex = best;
  }
  if (globalIndex != nullptr) {
    *globalIndex = global;
  }
  return best >= 0 || global >= 0;
}
