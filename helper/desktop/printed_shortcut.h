#pragma once

#include <optional>
#include <string_view>

#include "helper/commands/attempt.h"

namespace veltrix {

// The first keys of a shortcut's setting that a keyboard has, as gsettings prints it:
// "['<Primary><Super>d', 'F3']". Nothing when it has none or is no list of texts.
std::optional<KeyStroke> shortcutIn(std::string_view printed);

}  // namespace veltrix
