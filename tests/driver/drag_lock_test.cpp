#include <gmock/gmock.h>

#include "tests/driver/action_player_fixture.h"

namespace veltrix {
namespace {

using test::down;
using test::up;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The button that stays down, as the player of actions holds it.
using DragLock = test::ActionPlayerTest;

TEST_F(DragLock, HoldsUntilTheNextPressOfItsButton) {
  begin(kDragLock, kShift);
  end();
  EXPECT_THAT(taken(), ElementsAre(down(KEY_LEFTSHIFT), down(BTN_LEFT)));
  begin(kDragLock, kShift);
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT), up(KEY_LEFTSHIFT)));
  end();
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(DragLock, EndsBeforeAnyOtherClick) {
  for (const std::uint16_t command : std::to_array<std::uint16_t>({1, 2, 3, 4, 5, 12, 18})) {
    begin(kDragLock, kShift);
    end();
    taken();
    begin(command, 0, 0, kOtherVoice);
    const Groups groups = taken();
    ASSERT_EQ(groups.size(), 3U) << command;
    EXPECT_EQ(groups[0], up(BTN_LEFT));
    EXPECT_EQ(groups[1], up(KEY_LEFTSHIFT));
    EXPECT_EQ(groups[2].front(), '+');
    end(kOtherVoice);
    taken();
  }
}

TEST_F(DragLock, OfAnotherButtonTakesItsPlace) {
  begin(kDragLock);
  end();
  begin(kDragLock, 0, 0, kOtherVoice);
  end(kOtherVoice);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT), up(BTN_LEFT), down(BTN_LEFT)));
}

TEST_F(DragLock, OutlastsKeysScrollingAndModes) {
  begin(kDragLock);
  end();
  taken();
  for (const std::uint16_t command : std::to_array<std::uint16_t>({10, 20, 24, 27, 70})) {
    begin(command, 0, 255, kOtherVoice);
    end(kOtherVoice);
  }
  const Groups groups = taken();
  EXPECT_THAT(groups, ::testing::Not(::testing::Contains(up(BTN_LEFT))));
}

TEST_F(DragLock, PassThroughButtonIsAClickThatEndsIt) {
  begin(kDragLock);
  end();
  taken();
  fPlayer.begin(kFirstPlainVoice + 8, planOfPlainButton(8), stage());
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT), down(BTN_MOUSE + 8)));
}

TEST_F(DragLock, EndsWithEverything) {
  begin(kDragLock);
  end();
  taken();
  fPlayer.endAll(stage());
  EXPECT_THAT(taken(), ElementsAre(up(BTN_LEFT)));
  begin(kDragLock);
  EXPECT_THAT(taken(), ElementsAre(down(BTN_LEFT)));
}

}  // namespace
}  // namespace veltrix
