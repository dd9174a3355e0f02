#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace veltrix {

// `text` (UTF-8) with each of the seven characters " * / : ? \ | replaced by "-", so that it can be one
// component of a path on any file system; every other character stays. Nothing when there is no memory for
// the result.
std::optional<std::string> stringByReplacingIllegalPathCharacters(std::string_view text);

}  // namespace veltrix
