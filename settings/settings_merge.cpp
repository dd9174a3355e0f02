#include "settings/settings_merge.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "settings/settings_keys.h"

namespace veltrix {
namespace {

// What makes two entries the same for a merge. The vendor is left out.
struct MergeKey {
  std::int32_t product;
  std::int32_t versionMin;
  std::int32_t versionMax;
  friend bool operator==(const MergeKey&, const MergeKey&) = default;

  explicit MergeKey(const plist::Dictionary& entry)
      : product(entry.int32For(keys::kProductId)),
        versionMin(entry.int32For(keys::kVersionMin)),
        versionMax(entry.int32For(keys::kVersionMax)) {}
};

struct MergeKeyHash {
  std::size_t operator()(const MergeKey& key) const {
    std::uint64_t hash = 0;
    for (const std::int32_t part : {key.product, key.versionMin, key.versionMax}) {
      // Ids come in runs; the multiplication and shift spread neighbours over the whole range.
      hash = (hash ^ static_cast<std::uint32_t>(part)) * 0x9E3779B97F4A7C15U;
      hash ^= hash >> 32U;
    }
    return static_cast<std::size_t>(hash);
  }
};

using EntryTable = std::unordered_map<MergeKey, plist::Dictionary, MergeKeyHash>;

// The first entry of each key.
EntryTable tableOf(const plist::Array& devices) {
  EntryTable table;
  table.reserve(devices.count());
  for (const auto& element : devices.items()) {
    if (const auto entry = element.asDictionary()) {
      table.try_emplace(MergeKey(entry), entry);
    }
  }
  return table;
}

void mergeDevices(plist::Array userDevices, const plist::Array& factoryDevices) {
  EntryTable table = tableOf(userDevices);
  for (const auto& element : factoryDevices.items()) {
    const auto factoryEntry = element.asDictionary();
    if (!factoryEntry) {
      continue;
    }
    const auto [place, isNew] = table.try_emplace(MergeKey(factoryEntry), factoryEntry);
    if (isNew) {
      userDevices.append(factoryEntry);
    } else if (!place->second.contains(keys::kParam)) {
      place->second.set(keys::kParam, factoryEntry.get(keys::kParam));
    }
  }
}

}  // namespace

bool isUsableDocument(const plist::Dictionary& document) {
  return document.arrayFor(keys::kDevices).count() > 0 && document.int32For(keys::kVersion) > 1;
}

void mergeFactorySettings(plist::Dictionary user, const plist::Dictionary& factory) {
  mergeDevices(user.arrayFor(keys::kDevices), factory.arrayFor(keys::kDevices));
  if (!user.contains(keys::kSnippets)) {
    user.set(keys::kSnippets, factory.get(keys::kSnippets));
  }
}

}  // namespace veltrix
