#include "settings/speed_table.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>
#include <limits>

namespace veltrix {
namespace {

TEST(SpeedTable, SliderPositionsNameTableValues) {
  EXPECT_EQ(speedAtSlider(0), 5000);
  EXPECT_EQ(speedAtSlider(5), 4000);
  EXPECT_EQ(speedAtSlider(9), 4000);
  EXPECT_EQ(speedAtSlider(50), 400);
  EXPECT_EQ(speedAtSlider(99), 100);
  EXPECT_EQ(speedAtSlider(100), 80);
}

TEST(SpeedTable, PositionsBeyondTheSliderGiveTheMiddleSpeed) {
  EXPECT_EQ(speedAtSlider(101), 400);
  EXPECT_EQ(speedAtSlider(static_cast<std::uint32_t>(-1)), 400);
}

TEST(SpeedTable, SpeedsShowAtTheDetentOfTheNextSmallerValue) {
  EXPECT_EQ(sliderForSpeed(6400), 0);
  EXPECT_EQ(sliderForSpeed(5000), 0);
  EXPECT_EQ(sliderForSpeed(4999), 5);
  EXPECT_EQ(sliderForSpeed(1000), 20);
  EXPECT_EQ(sliderForSpeed(450), 50);
  EXPECT_EQ(sliderForSpeed(400), 50);
  EXPECT_EQ(sliderForSpeed(80), 100);
  EXPECT_EQ(sliderForSpeed(std::numeric_limits<std::int32_t>::max()), 0);
}

TEST(SpeedTable, SpeedsBelowTheSlowestShowInTheMiddle) {
  EXPECT_EQ(sliderForSpeed(79), 50);
  EXPECT_EQ(sliderForSpeed(1), 50);
  EXPECT_EQ(sliderForSpeed(0), 50);
  EXPECT_EQ(sliderForSpeed(-1), 50);
  EXPECT_EQ(sliderForSpeed(std::numeric_limits<std::int32_t>::min()), 50);
}

TEST(SpeedTable, EveryDetentSurvivesTheWayThereAndBack) {
  for (std::uint32_t position = 0; position <= 100; ++position) {
    const auto detent = static_cast<std::int32_t>(position / 5 * 5);
    EXPECT_EQ(sliderForSpeed(speedAtSlider(position)), detent);
  }
}

RC_GTEST_PROP(SpeedTable, NeverShowsAFasterDetentThanTheSpeed, ()) {
  const auto speed = *rc::gen::inRange(80, 20000);
  const auto shown = speedAtSlider(static_cast<std::uint32_t>(sliderForSpeed(speed)));
  RC_ASSERT(shown <= speed);
  RC_ASSERT(speed >= 5000 || sliderForSpeed(shown) == sliderForSpeed(speed));
}

}  // namespace
}  // namespace veltrix
