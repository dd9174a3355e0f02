// What the scrolling controls show and store.
#include "tests/ui/controls_fixture.h"

#include <limits>

namespace veltrix::testing {
namespace {

using ::testing::ElementsAre;

class ScrollingControlsTest : public ControlsTest {};

TEST_F(ScrollingControlsTest, ScrollSpeedIsTheCountItself) {
  openWith([](const plist::Dictionary& entry) {
    entry.dictionaryFor("buttons").dictionaryFor("12").set("cnt", 7);
  });
  EXPECT_EQ(position("outScrollSliderSpeed"), 7);
  press("outScrollSliderSpeed", Qt::Key_Right);
  EXPECT_EQ(wheel().int32For("cnt"), 8);
}

TEST_F(ScrollingControlsTest, AScrollSpeedOutsideTheUsualRangeIsShownAndKept) {
  for (const int amount : {0, -3, 250}) {
    openWith([&](const plist::Dictionary& entry) {
      entry.dictionaryFor("buttons").dictionaryFor("12").set("cnt", amount);
    });
    EXPECT_EQ(position("outScrollSliderSpeed"), amount);
    click("outScrollBoxInertial");
    EXPECT_EQ(wheel().int32For("cnt"), amount);
  }
}

// A mark for each amount would keep the window busy for minutes.
TEST_F(ScrollingControlsTest, AHugeScrollSpeedIsDrawnAtOnce) {
  for (const int amount : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    openWith([&](const plist::Dictionary& entry) {
      entry.dictionaryFor("buttons").dictionaryFor("12").set("cnt", amount);
    });
    auto* const slider = find<QSlider>("outScrollSliderSpeed");
    EXPECT_EQ(slider->value(), amount);
    EXPECT_GT(slider->tickInterval(), std::numeric_limits<int>::max() / 100);
    EXPECT_FALSE(slider->grab().isNull());
  }
}

TEST_F(ScrollingControlsTest, ReadingTheControlsAlwaysMakesTheWheelScroll) {
  openWith([](const plist::Dictionary& entry) {
    entry.dictionaryFor("buttons").dictionaryFor("12").set("cmd", 71);
  });
  click("outScrollBoxInertial");
  EXPECT_EQ(wheel().int32For("cmd"), 20);
}

TEST_F(ScrollingControlsTest, AnEntryWithoutWheelGetsNone) {
  openWith([](const plist::Dictionary& entry) { entry.dictionaryFor("buttons").remove("12"); });
  EXPECT_EQ(position("outScrollSliderSpeed"), 0);
  click("outScrollBoxInertial");
  EXPECT_TRUE(wheel().isNull());
  EXPECT_TRUE(options().boolFor("inertial scroll"));
}

TEST_F(ScrollingControlsTest, InertiaIsStored) {
  openWithOption("inertial scroll", false);
  click("outScrollBoxInertial");
  EXPECT_TRUE(options().boolFor("inertial scroll"));
}

TEST_F(ScrollingControlsTest, TheFirstDirectionIsTheInvertedOne) {
  openWithOption("invert wheel", true);
  EXPECT_TRUE(isChecked("cellDirectionInverted"));
  click("cellDirectionNormal");
  EXPECT_FALSE(options().boolFor("invert wheel"));
  click("cellDirectionInverted");
  EXPECT_TRUE(options().boolFor("invert wheel"));
  EXPECT_THAT(log, ElementsAre("VXUp", "VXUp"));
}

TEST_F(ScrollingControlsTest, EveryModelShowsItsDirectionPictures) {
  writeUserFile(makeUsualDocument());
  openPane();
  const std::vector<std::pair<Plugged, int>> pages = {{{0x1020, 1}, 0},      {{0x2041, 0x0107}, 1},
                                                      {{0x2041, 0x0106}, 0}, {{0x1022, 1}, 0},
                                                      {{0x2048, 1}, 2},      {{0x8002, 1}, 3}};
  for (const auto& [device, expected] : pages) {
    plugAndPoll({});
    plugAndPoll({device});
    EXPECT_EQ(page("outScrollTabsDirection"), expected) << device.productId;
  }
  plugAndPoll({});
  EXPECT_EQ(page("outScrollTabsDirection"), 0);
}

}  // namespace
}  // namespace veltrix::testing
