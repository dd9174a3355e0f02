#include "helperlink/device_buttons.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace veltrix {
namespace {

constexpr std::int32_t kFourButtonsTwoChords[] = {0, 1, 2, 3, 8, 9};
constexpr std::int32_t kFourButtons[] = {0, 1, 2, 3};
constexpr std::int32_t kTwoButtonsOneChord[] = {0, 1, 8};

struct Model {
  const char* picture;
  std::span<const std::int32_t> buttons;
};

// In the order of the device tabs from kFirstModelTab on.
constexpr std::array<Model, kLastModelTab - kFirstModelTab + 1> kModels{{
    {"device_tab2", kFourButtonsTwoChords},
    {"device_tab3", kFourButtonsTwoChords},
    {"device_tab4", kFourButtons},
    {"device_tab5", kTwoButtonsOneChord},
    {"device_tab6", kTwoButtonsOneChord},
    {"device_tab7", kTwoButtonsOneChord},
}};

const Model* modelFor(std::int32_t deviceTab) {
  if (deviceTab < kFirstModelTab || deviceTab > kLastModelTab) {
    return nullptr;
  }
  return &kModels[static_cast<std::size_t>(deviceTab - kFirstModelTab)];
}

}  // namespace

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
