#include "helper/jump/jump_decision.h"

#include <algorithm>
#include <cmath>

namespace veltrix {

bool ScreenArea::contains(ScreenPoint point) const {
  // A program may claim to be anywhere: its edges need not fit 32 bits.
  return point.x >= x && point.y >= y && std::int64_t{point.x} < std::int64_t{x} + width &&
         std::int64_t{point.y} < std::int64_t{y} + height;
}

ScreenPoint ScreenArea::centre() const {
  return {static_cast<std::int32_t>(std::int64_t{x} + width / 2),
          static_cast<std::int32_t>(std::int64_t{y} + height / 2)};
}

std::optional<ScreenArea> inScreenPixels(const ScreenArea& button, const ScreenArea& dialog,
                                         const ScreenArea& window) {
  constexpr double kTolerance = 0.35;  // frames and shadows make a window wider than its dialog
  constexpr int kLargest = 4;
  if (dialog.width <= 0 || window.width <= 0)
    return button;
  const double ratio = static_cast<double>(window.width) / dialog.width;
  if (ratio < 1 + kTolerance)
    return button;
  const double times = std::round(ratio);
  if (times > kLargest || std::abs(ratio - times) > kTolerance)
    return std::nullopt;
  const auto scaled = [&](std::int32_t value) {
    constexpr double kFarthest = 1 << 28;
    return static_cast<std::int32_t>(std::clamp(value * times, -kFarthest, kFarthest));
  };
  return ScreenArea{scaled(button.x), scaled(button.y), scaled(button.width), scaled(button.height)};
}

JumpDecision decideJump(const ScreenArea& button, const ScreenState& screen) {
  const ScreenPoint target = button.centre();
  // Programs that do not know where their window is, or that count in other pixels than the X server, give a
  // place that is wrong: the pointer stays rather than ending anywhere.
  if (!button.contains(target) || !screen.activeArea.contains(target))
    return {JumpOutcome::kOutOfWindow, target};
  if (screen.buttonHeld)
    return {JumpOutcome::kButtonHeld, target};
  if (button.contains(screen.pointer))
    return {JumpOutcome::kInsideAlready, target};
  return {JumpOutcome::kMoved, target};
}

}  // namespace veltrix
