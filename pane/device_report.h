#pragma once

#include <array>
#include <string>
#include <string_view>

#include "helperlink/device_kinds.h"
#include "helperlink/device_list.h"

namespace veltrix {

// Which kinds are among the connected trackballs, by the column of the device selector.
std::array<bool, kDeviceKindCount> presentKinds(const VeltrixDeviceList& list);

// What one trackball is called: the name of its kind (empty for an unknown one) and its version, "Name
// Rev. 1.02".
std::string deviceTitle(std::uint16_t productId, std::uint16_t version);

// One line for each connected trackball with the name of its kind (empty for an unknown one) and its version,
// as in "Name Rev. 1.02\n"; `noDevice` when there is none. UTF-8.
std::string deviceHelpText(const VeltrixDeviceList& list, std::string_view noDevice);

// `label` with a final "#" replaced by the version; any other label as it is.
std::string completedVersionLabel(std::string label, std::string_view version);

}  // namespace veltrix
