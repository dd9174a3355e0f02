#pragma once

#include <string_view>

namespace veltrix {

// Whether two UTF-8 texts agree when each letter is replaced by its lower-case one; the same in every locale.
// Letters that become several ("ß" and "SS") are not equal; bytes that are not UTF-8 equal only themselves.
bool equalIgnoringCase(std::string_view a, std::string_view b);

}  // namespace veltrix
