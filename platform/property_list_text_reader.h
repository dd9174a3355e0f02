#pragma once

#include <string_view>

#include "platform/property_list.h"
#include "util/result.h"

namespace veltrix::plist {

// Reads the old text form, UTF-8 without a byte-order mark: { key = value; }, ( value, value ), < hexadecimal
// digits >, quoted strings and bare words, and a file that is the inside of a dictionary. All its scalars are
// strings or data.
Result<Value> readText(std::string_view utf8);

}  // namespace veltrix::plist
