#include "driver/engine/action_plan.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <array>
#include <set>

namespace veltrix {
namespace {

ActionPlan planOfCommand(std::uint16_t command, std::uint16_t modifiers = 0, std::uint16_t argument = 0) {
  return planOf({.command = command, .modifiers = modifiers, .argument = argument, .reserved = 0});
}

TEST(ActionPlan, ClicksPressTheButtonOfTheirNumber) {
  constexpr std::array<std::pair<std::uint16_t, int>, 12> kButtons{{{1, BTN_LEFT},
                                                                    {2, BTN_RIGHT},
                                                                    {3, BTN_MIDDLE},
                                                                    {4, BTN_SIDE},
                                                                    {5, BTN_EXTRA},
                                                                    {12, BTN_MOUSE + 5},
                                                                    {13, BTN_MOUSE + 6},
                                                                    {14, BTN_MOUSE + 7},
                                                                    {15, BTN_MOUSE + 8},
                                                                    {16, BTN_MOUSE + 9},
                                                                    {17, BTN_MOUSE + 10},
                                                                    {18, BTN_MOUSE + 11}}};
  for (const auto& [command, button] : kButtons) {
    const ActionPlan plan = planOfCommand(command, 0x0300);
    EXPECT_EQ(plan.kind, PlanKind::kClick) << command;
    EXPECT_EQ(plan.code, button) << command;
    EXPECT_EQ(plan.presses, 1) << command;
    EXPECT_EQ(plan.modifiers, 0x0300) << command;
  }
}

TEST(ActionPlan, DoubleAndTripleClickPressTheFirstButtonMoreOften) {
  EXPECT_EQ(planOfCommand(6).presses, 2);
  EXPECT_EQ(planOfCommand(6).code, BTN_LEFT);
  EXPECT_EQ(planOfCommand(8).presses, 3);
  EXPECT_EQ(planOfCommand(8).code, BTN_LEFT);
}

TEST(ActionPlan, DragLockHoldsTheFirstButton) {
  const ActionPlan plan = planOfCommand(7, 0x0800);
  EXPECT_EQ(plan.kind, PlanKind::kDragLock);
  EXPECT_EQ(plan.code, BTN_LEFT);
  EXPECT_EQ(plan.modifiers, 0x0800);
}

TEST(ActionPlan, KeystrokeHoldsTheKeyOfItsVirtualCode) {
  const ActionPlan plan = planOfCommand(10, 0x1000, 8);
  EXPECT_EQ(plan.kind, PlanKind::kKey);
  EXPECT_EQ(plan.code, KEY_C);
  EXPECT_EQ(plan.modifiers, 0x1000);
}

TEST(ActionPlan, KeystrokeWithoutAKnownKeyDoesNothing) {
  for (const std::uint16_t code : std::to_array<std::uint16_t>({255, 66, 128, 0x100, 0xFFFF})) {
    EXPECT_EQ(planOfCommand(10, 0x1000, code).kind, PlanKind::kNothing) << code;
    EXPECT_FALSE(planOfCommand(10, 0x1000, code).forHelper) << code;
  }
}

TEST(ActionPlan, ScrollingKeepsItsSignedAmount) {
  for (std::uint16_t command = 20; command <= 23; ++command) {
    EXPECT_EQ(planOfCommand(command, 0, 0xFFFE).kind, PlanKind::kScroll);
    EXPECT_EQ(planOfCommand(command, 0, 0xFFFE).lines, -2);
  }
}

TEST(ActionPlan, ModesAreHeldOrTurnedOnAndOff) {
  constexpr std::array kModes{PointerMode::kScrollWithBall, PointerMode::kSlow, PointerMode::kSingleAxis};
  for (std::size_t index = 0; index < kModes.size(); ++index) {
    const ActionPlan held = planOfCommand(static_cast<std::uint16_t>(24 + index));
    EXPECT_EQ(held.kind, PlanKind::kModeWhileHeld);
    EXPECT_EQ(held.mode, kModes[index]);
    const ActionPlan turned = planOfCommand(static_cast<std::uint16_t>(27 + index));
    EXPECT_EQ(turned.kind, PlanKind::kModeOnOff);
    EXPECT_EQ(turned.mode, kModes[index]);
  }
}

TEST(ActionPlan, EveryOtherCodeIsTheHelpers) {
  const std::set<int> drivers = {0,  1,  2,  3,  4,  5,  6,  7,  8,  10, 12, 13, 14, 15,
                                 16, 17, 18, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29};
  for (int command = 0; command <= 0xFFFF; ++command) {
    const ActionPlan plan = planOfCommand(static_cast<std::uint16_t>(command), 0xFFFF, 3);
    ASSERT_EQ(plan.forHelper, !drivers.contains(command)) << command;
    ASSERT_EQ(plan.command, command);
    ASSERT_TRUE(plan.isReported);
    ASSERT_TRUE(!plan.forHelper || plan.kind == PlanKind::kNothing) << command;
  }
}

TEST(ActionPlan, PlainButtonPassesWithoutAReport) {
  for (std::uint8_t button = 0; button < 16; ++button) {
    const ActionPlan plan = planOfPlainButton(button);
    EXPECT_EQ(plan.kind, PlanKind::kClick);
    EXPECT_EQ(plan.code, BTN_MOUSE + button);
    EXPECT_EQ(plan.modifiers, 0);
    EXPECT_FALSE(plan.isReported);
  }
}

}  // namespace
}  // namespace veltrix
