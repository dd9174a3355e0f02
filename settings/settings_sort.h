#pragma once

#include "platform/property_list.h"

namespace veltrix {

// Moves the wildcard entries (vendor, product and "dict version" all 0 in their low 16 bits) to the front;
// among themselves both groups keep their order.
void sortWildcardEntriesFirst(plist::Array entries);

}  // namespace veltrix
