#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/property_list.h"
#include "util/result.h"

namespace veltrix::ctl {

// The index of the one entry that `text` names: an index ("0"), a product id ("2041"), a product with a
// version ("2041:0107", optionally behind a vendor, chosen as for a device) or a part of a kind's name
// ("skiffline"). The error's code is the exit code to end with.
Result<std::size_t> selectDevice(const plist::Array& devices, std::string_view text);

// "Crest Pointer™ (1020, every version)" for messages and headings.
std::string entryTitle(const plist::Dictionary& entry);

}  // namespace veltrix::ctl
