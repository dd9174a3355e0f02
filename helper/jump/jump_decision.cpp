#include "helper/jump/jump_decision.h"

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
