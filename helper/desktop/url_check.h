#pragma once

#include <string_view>

#include "util/result.h"

namespace veltrix {

inline constexpr std::size_t kLongestUrl = 8192;  // bytes

// Whether the text is an address that a button may open: a scheme as RFC 3986 has it, a colon and something
// behind it, without blanks and control characters, not longer than kLongestUrl. Schemes that read files or
// run what the address holds are refused.
Status checkUrl(std::string_view url);

}  // namespace veltrix
