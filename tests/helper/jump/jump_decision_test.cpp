#include "helper/jump/jump_decision.h"

#include <gtest/gtest.h>

#include <limits>

namespace veltrix {
namespace {

constexpr ScreenArea kButton{300, 400, 80, 30};

ScreenState screenWithPointerAt(ScreenPoint pointer) {
  ScreenState screen;
  screen.pointer = pointer;
  screen.activeWindow = 7;
  screen.activeArea = {200, 200, 400, 300};
  return screen;
}

TEST(JumpDecision, PointerGoesToTheMiddleOfTheButton) {
  const JumpDecision decision = decideJump(kButton, screenWithPointerAt({10, 10}));
  EXPECT_EQ(decision.outcome, JumpOutcome::kMoved);
  EXPECT_EQ(decision.target, (ScreenPoint{340, 415}));
}

TEST(JumpDecision, PointerOnTheButtonStaysWhereItIs) {
  EXPECT_EQ(decideJump(kButton, screenWithPointerAt({300, 400})).outcome, JumpOutcome::kInsideAlready);
  EXPECT_EQ(decideJump(kButton, screenWithPointerAt({379, 429})).outcome, JumpOutcome::kInsideAlready);
  EXPECT_EQ(decideJump(kButton, screenWithPointerAt({380, 429})).outcome, JumpOutcome::kMoved);
  EXPECT_EQ(decideJump(kButton, screenWithPointerAt({379, 430})).outcome, JumpOutcome::kMoved);
  EXPECT_EQ(decideJump(kButton, screenWithPointerAt({299, 400})).outcome, JumpOutcome::kMoved);
}

TEST(JumpDecision, NothingMovesDuringADrag) {
  ScreenState screen = screenWithPointerAt({10, 10});
  screen.buttonHeld = true;
  EXPECT_EQ(decideJump(kButton, screen).outcome, JumpOutcome::kButtonHeld);
}

TEST(JumpDecision, ButtonOutsideOfTheActiveWindowIsNotBelieved) {
  ScreenState screen = screenWithPointerAt({10, 10});
  screen.activeArea = {0, 0, 340, 500};
  EXPECT_EQ(decideJump(kButton, screen).outcome, JumpOutcome::kOutOfWindow);
  screen.activeArea = {0, 0, 341, 500};
  EXPECT_EQ(decideJump(kButton, screen).outcome, JumpOutcome::kMoved);
}

TEST(JumpDecision, ButtonWithoutAnExtentIsNotBelieved) {
  const ScreenState screen = screenWithPointerAt({10, 10});
  EXPECT_EQ(decideJump({300, 400, 0, 0}, screen).outcome, JumpOutcome::kOutOfWindow);
  EXPECT_EQ(decideJump({300, 400, -80, 30}, screen).outcome, JumpOutcome::kOutOfWindow);
  // What programs say of a button that is not shown.
  constexpr auto kLeast = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(decideJump({kLeast, kLeast, -1, -1}, screen).outcome, JumpOutcome::kOutOfWindow);
}

TEST(ScreenPixels, AreThoseOfTheProgramOnAnUnscaledDesktop) {
  EXPECT_EQ(inScreenPixels(kButton, {200, 200, 300, 200}, {190, 180, 320, 230})->x, 300);
  EXPECT_EQ(inScreenPixels(kButton, {200, 200, 0, 0}, {190, 180, 320, 230})->x, 300);
}

TEST(ScreenPixels, OfAScaledDesktopAreAWholeNumberToOne) {
  const auto area = inScreenPixels(kButton, {200, 200, 300, 200}, {390, 380, 612, 430});
  ASSERT_TRUE(area);
  EXPECT_EQ(area->centre(), (ScreenPoint{680, 830}));
  EXPECT_EQ(inScreenPixels(kButton, {200, 200, 300, 200}, {0, 0, 900, 600})->width, 240);
  EXPECT_FALSE(inScreenPixels(kButton, {200, 200, 300, 200}, {0, 0, 450, 300}));
  EXPECT_FALSE(inScreenPixels(kButton, {200, 200, 30, 20}, {0, 0, 900, 600}));
}

TEST(JumpDecision, PlacesBeyondAllScreensAreRefusedWithoutOverflow) {
  constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(decideJump({kMost, kMost, kMost, kMost}, screenWithPointerAt({10, 10})).outcome,
            JumpOutcome::kOutOfWindow);
}

}  // namespace
}  // namespace veltrix
