// What the player of actions tells of them.
#include <gmock/gmock.h>

#include "tests/driver/action_player_fixture.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ActionPlayerNotices : public test::ActionPlayerTest {
 protected:
  std::vector<ButtonNotice> notices() {
    const auto notices = fOutput.notices();
    return {notices.begin(), notices.end()};
  }
};

TEST_F(ActionPlayerNotices, CommandOfTheHelperIsToldAndPressesNothing) {
  begin(70);
  end();
  EXPECT_THAT(notices(),
              ElementsAre(ButtonNotice{kVoice, 70, true, true}, ButtonNotice{kVoice, 70, false, true}));
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(ActionPlayerNotices, CommandOfTheDriverIsToldForWatching) {
  begin(1);
  end();
  EXPECT_THAT(notices(),
              ElementsAre(ButtonNotice{kVoice, 1, true, false}, ButtonNotice{kVoice, 1, false, false}));
}

TEST_F(ActionPlayerNotices, ButtonWithoutAnActionIsToldForWatching) {
  begin(0);
  end();
  EXPECT_THAT(notices(),
              ElementsAre(ButtonNotice{kVoice, 0, true, false}, ButtonNotice{kVoice, 0, false, false}));
}

TEST_F(ActionPlayerNotices, ButtonThatPassesThroughIsNotTold) {
  fPlayer.begin(kFirstPlainVoice + 9, planOfPlainButton(9), stage());
  end(kFirstPlainVoice + 9);
  EXPECT_THAT(notices(), IsEmpty());
}

TEST_F(ActionPlayerNotices, EndOfEverythingTellsTheEndOfWhatIsHeld) {
  begin(70);
  begin(6, 0, 0, kOtherVoice);
  end(kOtherVoice);
  fOutput.clear();
  fPlayer.endAll(stage());
  EXPECT_THAT(notices(), ElementsAre(ButtonNotice{kVoice, 70, false, true}));
}

TEST_F(ActionPlayerNotices, TapTellsBothEnds) {
  tap(54);
  tap(1);
  tap(1);
  EXPECT_THAT(
      notices(),
      ElementsAre(ButtonNotice{kWheelSlot, 54, true, true}, ButtonNotice{kWheelSlot, 54, false, true},
                  ButtonNotice{kWheelSlot, 1, true, false}, ButtonNotice{kWheelSlot, 1, false, false},
                  ButtonNotice{kWheelSlot, 1, true, false}, ButtonNotice{kWheelSlot, 1, false, false}));
}

}  // namespace
}  // namespace veltrix
