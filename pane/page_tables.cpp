#include "pane/page_tables.h"

#include <array>
#include <cstddef>

#include "helperlink/device_buttons.h"

namespace veltrix {
namespace {

constexpr std::int32_t kNoDevice = 1;
constexpr std::int32_t kModelWithoutWheel = 5;
constexpr std::array<int, 6> kDirectionPages = {0, 1, 0, 0, 2, 3};  // by model

}  // namespace

bool pointerTabVisible(std::int32_t deviceTab) {
  return deviceTab != kNoDevice;
}

bool scrollingTabVisible(std::int32_t deviceTab) {
  return deviceTab != kNoDevice && deviceTab != kModelWithoutWheel;
}

bool leavesSelectedTab(std::int32_t deviceTab, int selectedIdentifier) {
  return selectedIdentifier == kScrollingTabIdentifier && deviceTab == kModelWithoutWheel;
}

int scrollDirectionPage(std::int32_t deviceTab) {
  if (deviceTab < kFirstModelTab || deviceTab > kLastModelTab) {
    return 0;
  }
  return kDirectionPages.at(static_cast<std::size_t>(deviceTab - kFirstModelTab));
}

int restoreAreaPage(std::int32_t deviceTab, int selectedTabIndex, int tabCount) {
  if (deviceTab == kNoDevice) {
    return 0;
  }
  return selectedTabIndex == tabCount - 1 ? 2 : 1;
}

int deviceIconsPage(int presentKinds) {
  return presentKinds > 1 ? 1 : 0;
}

}  // namespace veltrix
