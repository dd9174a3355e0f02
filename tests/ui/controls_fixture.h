#pragma once

// What the tests of the pointer and scrolling controls share.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSlider>
#include <QStackedWidget>
#include <QStyleOptionSlider>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/pane_fixture.h"

namespace veltrix::testing {

constexpr std::uint16_t kCrest = 0x1020;
constexpr std::uint16_t kLucent = 0x1022;

class ControlsTest : public PaneTest {
 protected:
  // The pane with one trackball whose options have been prepared.
  void openWith(const std::function<void(plist::Dictionary entry)>& prepare,
                std::uint16_t productId = kCrest) {
    plist::Dictionary entry = makeEntry(productId);
    prepare(entry);
    writeUserFile(makeDocument({entry}));
    plug({{productId, 0x0100}});
    openPane();
    log.clear();
  }

  void openWithOption(const char* key, const plist::Value& value) {
    openWith([&](const plist::Dictionary& entry) { entry.dictionaryFor("options").set(key, value); });
  }

  int position(const char* slider) const { return find<QSlider>(slider)->value(); }
  plist::Dictionary options() const { return userOptions(kCrest); }
  plist::Dictionary wheel() const { return userEntry(kCrest).dictionaryFor("buttons").dictionaryFor("12"); }
  int page(const char* stack) const { return find<QStackedWidget>(stack)->currentIndex(); }

  static QPoint grooveNearRightEnd(const QSlider& slider) {
    QStyleOptionSlider option;
    option.initFrom(&slider);
    option.maximum = slider.maximum();
    option.tickPosition = slider.tickPosition();
    const QRect groove =
        slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, &slider);
    return {groove.right() - 4, groove.center().y()};
  }

  std::vector<bool> checkedKeys(const std::string& prefix) const {
    std::vector<bool> states;
    for (const char* key : {"Cmd", "Shift", "Opt", "Ctrl"}) {
      states.push_back(isChecked((prefix + key).c_str()));
    }
    return states;
  }
};

}  // namespace veltrix::testing
