#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace veltrix {

// A number of one to `digits` hexadecimal digits and nothing else. False, with `value` untouched, for any
// other text.
bool parseHex(std::string_view text, std::size_t digits, std::uint16_t* value);

}  // namespace veltrix
