#pragma once

#include <string_view>

#include "platform/property_list.h"
#include "util/result.h"

namespace veltrix::plist {

// Reads an XML property list in UTF-8 without a byte-order mark.
Result<Value> readXml(std::string_view utf8);

}  // namespace veltrix::plist
