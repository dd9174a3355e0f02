#include "editor/button_tabs.h"

#include <gtest/gtest.h>

#include "helperlink/device_buttons.h"

namespace veltrix {
namespace {

TEST(ButtonTabs, LightsTheButtonOfTheSelectedTab) {
  ButtonTabs tabs;
  tabs.setDeviceTab(2);
  tabs.setCurrentIndex(2);
  EXPECT_EQ(tabs.lit(), QStringList{"button2"});
  EXPECT_EQ(tabs.caption(), "Button 3");
}

TEST(ButtonTabs, LightsBothButtonsOfAChord) {
  ButtonTabs tabs;
  tabs.setDeviceTab(5);
  tabs.setCurrentIndex(2);
  EXPECT_EQ(tabs.lit(), (QStringList{"button0", "button1"}));
  EXPECT_EQ(tabs.caption(), "Buttons 1 and 2 together");
}

TEST(ButtonTabs, HasATabForEveryButtonOfEveryModel) {
  for (int deviceTab = kFirstModelTab; deviceTab <= kLastModelTab; ++deviceTab) {
    ButtonTabs tabs;
    tabs.setDeviceTab(deviceTab);
    for (const std::int32_t button : buttonNumbers(deviceTab)) {
      tabs.setCurrentIndex(buttonPosition(deviceTab, button));
      EXPECT_EQ(tabs.lit().size(), button >= 8 ? 2 : 1) << deviceTab << " " << button;
    }
  }
}

TEST(ButtonTabs, LightsNothingOutsideTheTabs) {
  ButtonTabs tabs;
  tabs.setDeviceTab(5);
  for (const int index : {-1, 3}) {
    tabs.setCurrentIndex(0);
    tabs.setCurrentIndex(index);
    EXPECT_TRUE(tabs.lit().isEmpty());
    EXPECT_EQ(tabs.caption(), "");
  }
}

}  // namespace
}  // namespace veltrix
