#pragma once

#include <array>
#include <cstdint>

#include "tests/ui/model/document.h"

namespace veltrix::model {

using Record = std::array<std::uint8_t, 176>;

bool isClick(int command);
bool isScroll(int command);

// The driver's record of an entry, where command 200 takes the action of the same button in `fallback`.
Record recordOf(const Json& entry, const Json& fallback);

}  // namespace veltrix::model
