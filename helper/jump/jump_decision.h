#pragma once

#include <cstdint>
#include <optional>

#include "helper/jump/jump_message.h"

namespace veltrix {

// Pixels of the X screen.
struct ScreenPoint {
  std::int32_t x = 0;
  std::int32_t y = 0;

  friend bool operator==(const ScreenPoint& a, const ScreenPoint& b) = default;
};

struct ScreenArea {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;

  // The right and the lower edge are outside.
  bool contains(ScreenPoint point) const;
  ScreenPoint centre() const;
};

// What the X server knows at one moment.
struct ScreenState {
  ScreenPoint pointer;
  bool buttonHeld = false;
  std::uint32_t activeWindow =
      0;                  // the top-level window that has the keyboard, its frame included; 0 for none
  ScreenArea activeArea;  // of that window, or the whole screen when there is none
};

struct JumpDecision {
  JumpOutcome outcome;  // kMoved: the pointer is to be moved to `target`
  ScreenPoint target;
};

// Where a button of a dialog lies in pixels of the screen. On a scaled desktop programs count in pixels that
// are two or more times as large; how many times is told by the width of the dialog, which the program has
// given, beside that of its window, which the X server knows. Nothing when it is no whole number of times.
std::optional<ScreenArea> inScreenPixels(const ScreenArea& button, const ScreenArea& dialog,
                                         const ScreenArea& window);

// Whether the pointer is to go to a button that lies at `button`.
JumpDecision decideJump(const ScreenArea& button, const ScreenState& screen);

}  // namespace veltrix
