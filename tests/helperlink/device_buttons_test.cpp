#include "helperlink/device_buttons.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::int32_t> numbers(std::int32_t deviceTab) {
  const auto found = buttonNumbers(deviceTab);
  return {found.begin(), found.end()};
}

TEST(DeviceButtons, EveryModelHasItsButtonsInOrder) {
  EXPECT_THAT(numbers(2), ElementsAre(0, 1, 2, 3, 8, 9));
  EXPECT_THAT(numbers(3), ElementsAre(0, 1, 2, 3, 8, 9));
  EXPECT_THAT(numbers(4), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(numbers(5), ElementsAre(0, 1, 8));
  EXPECT_THAT(numbers(6), ElementsAre(0, 1, 8));
  EXPECT_THAT(numbers(7), ElementsAre(0, 1, 8));
  EXPECT_THAT(numbers(1), IsEmpty());
  EXPECT_THAT(numbers(8), IsEmpty());
}

TEST(DeviceButtons, AChordIsFoundBehindTheButtonsAndAnUnknownOneIsFirst) {
  EXPECT_EQ(buttonPosition(5, 8), 2);
  EXPECT_EQ(buttonPosition(5, 9), 0);
  EXPECT_EQ(buttonPosition(2, 9), 5);
}

TEST(DeviceButtons, WithoutADeviceEveryButtonIsFirst) {
  for (const std::int32_t button : {0, 1, 2, 3, 8, 9, 12}) {
    EXPECT_EQ(buttonPosition(1, button), 0);
  }
}

TEST(DeviceButtons, EveryModelHasAPictureOfItsOwn) {
  std::set<std::string> pictures;
  for (std::int32_t deviceTab = 1; deviceTab <= 7; ++deviceTab) {
    pictures.insert(devicePicture(deviceTab));
  }
  EXPECT_EQ(pictures.size(), 7U);
  EXPECT_STREQ(devicePicture(99), devicePicture(1));
}

}  // namespace
}  // namespace veltrix
