#include "ctl/device_selector.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <vector>

#include "ctl/hex_ids.h"
#include "ctl/outcome.h"
#include "helperlink/device_kinds.h"
#include "settings/settings_keys.h"
#include "settings/settings_rules.h"

namespace veltrix::ctl {
namespace {

constexpr std::size_t kMostIndexDigits = 3;  // four digits are a product id

std::string folded(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower;
}

bool isIndex(std::string_view text) {
  return text.size() <= kMostIndexDigits &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

Error notFound(std::string_view text) {
  return {kNotFound, "no entry for \"" + std::string(text) + "\"", {}};
}

Result<std::size_t> selectByIndex(const plist::Array& devices, std::string_view text) {
  std::size_t index = 0;
  std::from_chars(text.data(), text.data() + text.size(), index);
  if (!devices.at(index).asDictionary()) {
    return notFound(text);
  }
  return index;
}

Result<std::size_t> selectByVersion(const plist::Array& devices, std::string_view text) {
  const bool hasVendor = std::count(text.begin(), text.end(), ':') == 2;
  const auto ids =
      parseDeviceIds(hasVendor ? std::string(text) : hexId(kFamilyVendorId) + ":" + std::string(text));
  if (!ids) {
    return Error{kBadInput, "\"" + std::string(text) + "\" is not PRODUCT:VERSION in hexadecimal", {}};
  }
  std::int32_t best = -1;
  VeltrixMatchAppPrefs(devices, nullptr, nullptr, ids->vendor, ids->product, ids->version, &best, nullptr);
  if (best < 0) {
    return notFound(text);
  }
  return static_cast<std::size_t>(best);
}

Result<std::size_t> selectTheOnlyOne(const plist::Array& devices, std::string_view text,
                                     const std::function<bool(const plist::Dictionary&)>& fits) {
  std::vector<std::size_t> found;
  std::string names;
  for (std::size_t i = 0; i < devices.count(); ++i) {
    const auto entry = devices.at(i).asDictionary();
    if (entry && fits(entry)) {
      found.push_back(i);
      names += (names.empty() ? "" : ", ") + std::to_string(i) + " " + entryTitle(entry);
    }
  }
  if (found.empty()) {
    return notFound(text);
  }
  if (found.size() > 1) {
    return Error{kBadInput, "\"" + std::string(text) + "\" names more than one entry: " + names, {}};
  }
  return found.front();
}

}  // namespace

Result<std::size_t> selectDevice(const plist::Array& devices, std::string_view text) {
  if (text.empty()) {
    return notFound(text);
  }
  if (isIndex(text)) {
    return selectByIndex(devices, text);
  }
  if (text.find(':') != std::string_view::npos) {
    return selectByVersion(devices, text);
  }
  if (const auto product = parseHexId(text)) {
    return selectTheOnlyOne(devices, text, [=](const plist::Dictionary& entry) {
      return entry.uint16For(keys::kProductId) == *product;
    });
  }
  return selectTheOnlyOne(devices, text, [wanted = folded(text)](const plist::Dictionary& entry) {
    const auto* kind = findDeviceKind(entry.uint16For(keys::kProductId));
    return kind != nullptr && folded(kind->name).find(wanted) != std::string::npos;
  });
}

std::string entryTitle(const plist::Dictionary& entry) {
  const auto product = entry.uint16For(keys::kProductId);
  const auto versionMin = entry.uint16For(keys::kVersionMin);
  const auto versionMax = entry.uint16For(keys::kVersionMax);
  const auto* kind = findDeviceKind(product);
  std::string name = kind != nullptr ? kind->name : product == 0 ? "any product" : "unknown product";
  std::string versions = "every version";
  if (versionMin != 0 && versionMax != 0) {
    versions = versionText(versionMin) + " to " + versionText(versionMax);
  } else if (versionMin != 0) {
    versions = "from " + versionText(versionMin);
  } else if (versionMax != 0) {
    versions = "up to " + versionText(versionMax);
  }
  return name + " (" + hexId(product) + ", " + versions + ")";
}

}  // namespace veltrix::ctl
