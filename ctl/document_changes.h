#pragma once

#include <string>
#include <vector>

#include "platform/property_list.h"

namespace veltrix::ctl {

// One place of a settings document that differs from another document.
struct DocumentChange {
  std::string place;    // as in "devices/0/options/speed"
  plist::Value before;  // missing when the value is new
  plist::Value after;   // missing when the value is gone
};

// What has to change in `before` to make it `after`, down to single values, in the order of `before` with new
// keys behind. The order of keys and the form of a file are no difference; elements of arrays are compared by
// their index.
std::vector<DocumentChange> changesBetween(const plist::Value& before, const plist::Value& after);

}  // namespace veltrix::ctl
