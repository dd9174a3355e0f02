#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/keyboard_layout.h"
#include "util/result.h"

namespace veltrix::ctl {

// A number up to `most`, decimal or hexadecimal after "0x"; nothing for anything else.
std::optional<std::uint32_t> parseNumber(std::string_view text, std::uint32_t most);

// Makes the layout of that name, or the desktop's for an empty name, the one that keys are named by.
Status useLayout(const std::string& name);

}  // namespace veltrix::ctl
