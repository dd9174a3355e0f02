#pragma once

#include <string_view>

#include "platform/property_list.h"
#include "util/result.h"

namespace veltrix::plist {

// Reads the binary form, version 00.
Result<Value> readBinary(std::string_view bytes);

}  // namespace veltrix::plist
