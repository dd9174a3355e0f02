#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veltrix {

// The usual alphabet with '=' as padding, in one line.
std::string base64Encoded(const std::vector<std::byte>& data);

// Blanks and line ends are skipped; any other foreign character, wrong padding or a length that no data has
// gives nothing.
std::optional<std::vector<std::byte>> base64Decoded(std::string_view text);

}  // namespace veltrix
