#pragma once

#include <string>
#include <string_view>

namespace veltrix {

// A text from outside as it may stand in a line for a person: control characters and what is no UTF-8 become
// "?", and of a long text the start alone is left.
std::string oneLine(std::string_view text);

}  // namespace veltrix
