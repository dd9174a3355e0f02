#pragma once

#include <cstdint>

#include "settings/command_classes.h"

namespace veltrix {

// What parameters an action has; the numbers are those of the editor's pages.
enum class ActionKind : std::int32_t {
  kPlain = 0,
  kClick = 1,
  kKeystroke = 2,
  kSnippet = 3,
  kScroll = 4,
  kApplication = 5,
  kItem = 6,
  kUrl = 7,
  kScript = 8,
};

inline constexpr int kActionKindCount = 9;

// By the low 16 bits of the number.
ActionKind actionKind(std::int32_t command);

}  // namespace veltrix
