#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "util/result.h"

// What sway says about keyboards.
namespace veltrix {

struct CompositorKeyboard {
  std::string identifier;
  std::string name;
  std::uint32_t group = 0;  // of its keymap, from 0
};

// The keyboards in an answer of CompositorKind::kInputs, in its order. What is no keyboard, or has no keymap
// yet, is left out; so is one without a name.
Result<std::vector<CompositorKeyboard>> compositorKeyboards(std::string_view body);

struct CompositorInputChange {
  std::string change;  // "added", "removed", "xkb_layout", ...
  std::optional<CompositorKeyboard> keyboard;
};

// What a message of CompositorKind::kInputEvent tells.
Result<CompositorInputChange> compositorInputChange(std::string_view body);

// Whether the answer to a subscription says that events will come.
bool compositorSubscribed(std::string_view body);

}  // namespace veltrix
