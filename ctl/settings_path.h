#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/property_list.h"
#include "util/result.h"

namespace veltrix::ctl {

// Where a value stands in a settings document. The last key need not be there.
struct SettingsPlace {
  plist::Dictionary parent;  // null when the parent is an array or the place is the root
  std::string key;
  plist::Value value;  // missing when there is no such key
  std::string path;    // with the device as an index: "devices/1/options/speed"
};

// Follows "devices/DEVICE/options/speed": keys and indices with '/' between them, and behind "devices"
// anything that selectDevice takes. The empty path is the root. The error's code is the exit code to end
// with.
Result<SettingsPlace> findPlace(const plist::Dictionary& document, std::string_view path);

}  // namespace veltrix::ctl
