#include "helper/jump/dialog_jumper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/helper/jump/fake_parts.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using testing::defaultButtonAt;
using ::testing::ElementsAre;
using testing::FakePart;
using testing::groupOf;
using ::testing::IsEmpty;
using testing::plainButton;

class FakeScreen final : public JumpScreen {
 public:
  std::optional<ScreenState> look() override { return state; }
  void moveTo(ScreenPoint point) override {
    moves.push_back(point);
    state->pointer = point;
  }
  void watch(std::uint32_t window) override { watched.push_back(window); }
  std::vector<std::uint32_t> takeClosed() override { return std::exchange(closed, {}); }

  std::optional<ScreenState> state = ScreenState{{1, 1}, false, 7, {0, 0, 1000, 1000}};
  std::vector<ScreenPoint> moves;
  std::vector<std::uint32_t> watched;
  std::vector<std::uint32_t> closed;
};

class DialogJumperTest : public ::testing::Test {
 protected:
  void activate(const char* id) {
    fJumper.activated(id, std::make_unique<testing::FakeAccessible>(fDialog, &fQuestions));
  }
  // Attempts until there is nothing left to do; how long that took by the waits alone.
  milliseconds run() {
    milliseconds waited{0};
    while (const auto wait = fJumper.attempt()) {
      waited += *wait;
      fNow += *wait;
    }
    return waited;
  }

  FakePart fDialog = groupOf({plainButton(), defaultButtonAt({100, 200, 80, 30})});
  int fQuestions = 0;
  FakeScreen fScreen;
  DialogJumper::Clock::time_point fNow{};
  std::vector<JumpOutcome> fOutcomes;
  DialogJumper fJumper{fScreen, [this] { return fNow; },
                       [this](JumpOutcome outcome) { fOutcomes.push_back(outcome); }};
};

TEST_F(DialogJumperTest, MovesOnceForADialogThatOpens) {
  activate("a");
  EXPECT_EQ(run(), milliseconds(0));
  EXPECT_THAT(fScreen.moves, ElementsAre(ScreenPoint{140, 215}));
  EXPECT_THAT(fOutcomes, ElementsAre(JumpOutcome::kMoved));
  EXPECT_THAT(fScreen.watched, ElementsAre(7));
}

TEST_F(DialogJumperTest, DialogThatComesToTheFrontAgainLeavesThePointerAlone) {
  activate("a");
  run();
  fScreen.state->pointer = {1, 1};
  fQuestions = 0;
  activate("a");
  run();
  EXPECT_EQ(fScreen.moves.size(), 1U);
  EXPECT_EQ(fOutcomes.size(), 1U);
  EXPECT_EQ(fQuestions, 0);
}

TEST_F(DialogJumperTest, DialogThatIsToldOfWhenAnotherWindowIsInFrontAlreadyLeavesThePointerAlone) {
  activate("a");
  run();
  fScreen.state->pointer = {1, 1};
  fScreen.state->activeWindow = 8;
  activate("a");
  run();
  EXPECT_EQ(fScreen.moves.size(), 1U);
  EXPECT_EQ(fOutcomes.size(), 1U);
}

TEST_F(DialogJumperTest, DialogThatNeverGotTheKeyboardIsServedWhenItDoes) {
  fScreen.state->activeArea = {0, 0, 50, 50};
  activate("a");
  run();
  fScreen.state->activeWindow = 8;
  fScreen.state->activeArea = {0, 0, 1000, 1000};
  activate("a");
  run();
  EXPECT_THAT(fOutcomes, ElementsAre(JumpOutcome::kOutOfWindow, JumpOutcome::kMoved));
}

TEST_F(DialogJumperTest, DialogThatWasClosedAndIsOpenedAgainCountsAnew) {
  activate("a");
  run();
  fScreen.state->pointer = {1, 1};
  fScreen.closed = {7};
  activate("a");
  run();
  EXPECT_EQ(fScreen.moves.size(), 2U);
}

TEST_F(DialogJumperTest, AnotherDialogInTheSameWindowCounts) {
  activate("a");
  run();
  fScreen.state->pointer = {1, 1};
  activate("b");
  run();
  EXPECT_EQ(fScreen.moves.size(), 2U);
}

TEST_F(DialogJumperTest, WaitsForADefaultButtonThatComesLater) {
  fDialog.parts[1].isDefault = false;
  activate("a");
  auto wait = fJumper.attempt();
  ASSERT_TRUE(wait);
  fNow += *wait;
  EXPECT_THAT(fOutcomes, IsEmpty());
  fDialog.parts[1].isDefault = true;
  EXPECT_FALSE(fJumper.attempt());
  EXPECT_THAT(fOutcomes, ElementsAre(JumpOutcome::kMoved));
}

TEST_F(DialogJumperTest, GivesUpAfterHalfASecond) {
  fDialog = groupOf({plainButton()});
  activate("a");
  EXPECT_EQ(run(), milliseconds(500));
  EXPECT_THAT(fOutcomes, ElementsAre(JumpOutcome::kNoButton));
  EXPECT_THAT(fScreen.moves, IsEmpty());
}

TEST_F(DialogJumperTest, DialogWithoutAButtonIsNotSearchedAgain) {
  fDialog = groupOf({plainButton()});
  activate("a");
  run();
  fQuestions = 0;
  activate("a");
  EXPECT_EQ(run(), milliseconds(0));
  EXPECT_EQ(fQuestions, 0);
  EXPECT_EQ(fOutcomes.size(), 1U);
}

TEST_F(DialogJumperTest, WaitsForTheWindowToGetTheKeyboard) {
  fScreen.state->activeArea = {0, 0, 50, 50};
  activate("a");
  ASSERT_TRUE(fJumper.attempt());
  fScreen.state->activeArea = {0, 0, 1000, 1000};
  EXPECT_FALSE(fJumper.attempt());
  EXPECT_THAT(fOutcomes, ElementsAre(JumpOutcome::kMoved));
}

TEST_F(DialogJumperTest, DragIsNotInterruptedLaterEither) {
  fScreen.state->buttonHeld = true;
  activate("a");
  EXPECT_EQ(run(), milliseconds(0));
  fScreen.state->buttonHeld = false;
  activate("a");
  run();
  EXPECT_THAT(fOutcomes, ElementsAre(JumpOutcome::kButtonHeld));
  EXPECT_THAT(fScreen.moves, IsEmpty());
}

TEST_F(DialogJumperTest, NextDialogTakesThePlaceOfOneThatIsStillTried) {
  const FakePart empty = groupOf({});
  fJumper.activated("a", std::make_unique<testing::FakeAccessible>(empty, &fQuestions));
  ASSERT_TRUE(fJumper.attempt());
  activate("b");
  EXPECT_EQ(run(), milliseconds(0));
  EXPECT_THAT(fOutcomes, ElementsAre(JumpOutcome::kMoved));
}

TEST_F(DialogJumperTest, WithoutAWindowManagerEveryDialogCounts) {
  fScreen.state->activeWindow = 0;
  activate("a");
  run();
  fScreen.state->pointer = {1, 1};
  activate("a");
  run();
  EXPECT_EQ(fScreen.moves.size(), 2U);
  EXPECT_THAT(fScreen.watched, IsEmpty());
}

TEST_F(DialogJumperTest, WithoutAScreenNothingHappens) {
  fScreen.state.reset();
  activate("a");
  EXPECT_FALSE(fJumper.attempt());
  EXPECT_FALSE(fJumper.attempt());
  EXPECT_EQ(fQuestions, 0);
  EXPECT_THAT(fOutcomes, IsEmpty());
}

}  // namespace
}  // namespace veltrix
