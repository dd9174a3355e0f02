#include "widgets/button_numbers.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

TEST(ButtonNumbersTest, CountsButtonsFromOneInCaptions) {
  EXPECT_EQ(calloutCaption(0), "Button 1");
  EXPECT_EQ(calloutCaption(3), "Button 4");
  EXPECT_EQ(calloutCaption(8), "Buttons 1 and 2 together");
  EXPECT_EQ(calloutCaption(9), "Buttons 3 and 4 together");
}

TEST(ButtonNumbersTest, NamesOneElementForAButtonAndTwoForAChord) {
  EXPECT_EQ(buttonElements(2), QStringList{"button2"});
  EXPECT_EQ(buttonElements(8), (QStringList{"button0", "button1"}));
  EXPECT_EQ(buttonElements(9), (QStringList{"button2", "button3"}));
}

}  // namespace
}  // namespace veltrix
