#pragma once

#include <string_view>

#include "platform/property_list.h"

namespace veltrix {

// The type that a scalar key of the settings document has wherever it stands; kMissing for a key that is not
// known or whose value is a container.
plist::Type settingsTypeOf(std::string_view key);

// The English name of a type for messages, such as "an integer".
const char* typeName(plist::Type type);

}  // namespace veltrix
