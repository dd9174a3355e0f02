#pragma once

#include <functional>
#include <string_view>

namespace veltrix {

// Calls `take` for each "key=value" in the groups of that name of a file in desktop-entry form, in their
// order and without the blanks around key and value. Lines that make no sense are passed over. The views lie
// in `bytes`.
void readKeyFileGroup(std::string_view bytes, std::string_view group,
                      const std::function<void(std::string_view key, std::string_view value)>& take);

}  // namespace veltrix
