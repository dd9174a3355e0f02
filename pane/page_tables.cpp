#include "pane/page_tables.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace veltrix {
namespace {

constexpr std::int32_t kNoDevice = 1;
constexpr std::int32_t kFirstModel = 2;
constexpr std::int32_t kModelWithoutWheel = 5;
constexpr std::int32_t kFourButtonsTwoChords[] = {0, 1, 2, 3, 8, 9};
constexpr std::int32_t kFourButtons[] = {0, 1, 2, 3};
constexpr std::int32_t kTwoButtonsOneChord[] = {0, 1, 8};

struct Model {
  const char* picture;
  std::span<const std::int32_t> buttons;
  int directionPage;
};

// In the order of the device tabs from kFirstModel on.
constexpr std::array<Model, 6> kModels{{
    {"device_tab2", kFourButtonsTwoChords, 0},
    {"device_tab3", kFourButtonsTwoChords, 1},
    {"device_tab4", kFourButtons, 0},
    {"device_tab5", kTwoButtonsOneChord, 0},
    {"device_tab6", kTwoButtonsOneChord, 2},
    {"device_tab7", kTwoButtonsOneChord, 3},
}};

const Model* modelFor(std::int32_t deviceTab) {
  const std::int64_t index = static_cast<std::int64_t>(deviceTab) - kFirstModel;
  if (index < 0 || index >= static_cast<std::int64_t>(kModels.size())) {
    return nullptr;
  }
  return &kModels[static_cast<std::size_t>(index)];
}

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
  const Model* model = modelFor(deviceTab);
  return model != nullptr ? model->directionPage : 0;
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

std::span<const std::int32_t> buttonNumbers(std::int32_t deviceTab) {
  const Model* model = modelFor(deviceTab);
  return model != nullptr ? model->buttons : std::span<const std::int32_t>();
}

std::int32_t buttonPosition(std::int32_t deviceTab, std::int32_t button) {
  const auto numbers = buttonNumbers(deviceTab);
  const auto found = std::find(numbers.begin(), numbers.end(), button);
  return found == numbers.end() ? 0 : static_cast<std::int32_t>(found - numbers.begin());
}

const char* devicePicture(std::int32_t deviceTab) {
  const Model* model = modelFor(deviceTab);
  return model != nullptr ? model->picture : "no_device";
}

}  // namespace veltrix
