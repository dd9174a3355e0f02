#include "driver/engine/action_plan.h"

#include <linux/input-event-codes.h>

#include "driver/engine/scroll_commands.h"
#include "keyboard/virtual_keys.h"

namespace veltrix {

namespace {

constexpr std::uint16_t kDoubleClick = 6;
constexpr std::uint16_t kDragLock = 7;
constexpr std::uint16_t kTripleClick = 8;
constexpr std::uint16_t kKeystroke = 10;
constexpr std::uint16_t kFirstModeWhileHeld = 24;
constexpr std::uint16_t kFirstModeOnOff = 27;
constexpr std::uint16_t kLastModeOnOff = 29;

// The button that a command clicks; 0 for a command that is no click.
constexpr std::uint16_t buttonOfClick(std::uint16_t command) {
  if (command >= 1 && command <= 5)
    return static_cast<std::uint16_t>(BTN_MOUSE + command - 1);
  if (command >= 6 && command <= 8)
    return BTN_LEFT;
  if (command >= 12 && command <= 18)
    return static_cast<std::uint16_t>(BTN_MOUSE + command - 7);
  return 0;
}

void planClick(const RecordAction& action, ActionPlan& plan) {
  plan.kind = action.command == kDragLock ? PlanKind::kDragLock : PlanKind::kClick;
  plan.code = buttonOfClick(action.command);
  plan.modifiers = action.modifiers;
  if (action.command == kDoubleClick)
    plan.presses = 2;
  if (action.command == kTripleClick)
    plan.presses = 3;
}

void planKey(const RecordAction& action, ActionPlan& plan) {
  const auto code = evdevCodeOf(action.argument);
  if (!code)
    return;
  plan.kind = PlanKind::kKey;
  plan.code = *code;
  plan.modifiers = action.modifiers;
}

void planScroll(const RecordAction& action, ActionPlan& plan) {
  plan.kind = PlanKind::kScroll;
  plan.lines = static_cast<std::int16_t>(action.argument);
}

void planMode(std::uint16_t command, ActionPlan& plan) {
  plan.kind = command < kFirstModeOnOff ? PlanKind::kModeWhileHeld : PlanKind::kModeOnOff;
  plan.mode = static_cast<PointerMode>((command - kFirstModeWhileHeld) % 3);
}

}  // namespace

ActionPlan planOf(const RecordAction& action) noexcept {
  ActionPlan plan;
  plan.command = action.command;
  plan.isReported = true;
  if (buttonOfClick(action.command) != 0)
    planClick(action, plan);
  else if (action.command == kKeystroke)
    planKey(action, plan);
  else if (isScroll(action.command))
    planScroll(action, plan);
  else if (action.command >= kFirstModeWhileHeld && action.command <= kLastModeOnOff)
    planMode(action.command, plan);
  else
    plan.forHelper = action.command != 0;
  return plan;
}

ActionPlan planOfPlainButton(std::uint8_t button) noexcept {
  ActionPlan plan;
  plan.kind = PlanKind::kClick;
  plan.code = static_cast<std::uint16_t>(BTN_MOUSE + button);
  return plan;
}

}  // namespace veltrix
