#include <QAbstractButton>
#include <QLabel>
#include <QSlider>
#include <QStackedWidget>

#include "pane/cell_matrix.h"
#include "tests/ui/model/comparison.h"

namespace veltrix::model {
namespace {

// Compares the widgets of one pane with what they should show.
class Comparison {
 public:
  Comparison(const Hands& hands, Problems* problems) : fHands(hands), fProblems(problems) {}

  void slider(SliderName name, const Slider& expected, bool enabled) {
    const char* const widget = Hands::nameOf(name);
    const auto* slider = fHands.reach<QSlider>(widget);
    check(widget, {expected.position, expected.least, expected.most, enabled},
          {slider->value(), slider->minimum(), slider->maximum(), slider->isEnabled()});
  }

  void box(Box box, bool on, bool enabled) {
    const auto* button = fHands.reach<QAbstractButton>(Hands::nameOf(box));
    check(Hands::nameOf(box), {on, enabled}, {button->isChecked(), button->isEnabled()});
  }

  void row(const KeyRow& row, Box first) {
    box(first, row.on, true);
    for (std::size_t i = 0; i < row.keys.size(); ++i) {
      box(static_cast<Box>(static_cast<std::size_t>(first) + 1 + i), row.keys.at(i), row.keysEnabled);
    }
  }

  void page(const char* stack, int expected) {
    check(stack, expected, fHands.reach<QStackedWidget>(stack)->currentIndex());
  }

  void text(const char* label, const std::string& expected) {
    check(label, expected, fHands.reach<QLabel>(label)->text().toStdString());
  }

  void menu(int deviceTab, int button, const Menu& expected) {
    const auto* menu = fHands.menu(deviceTab, button);
    const int tag = menu->selectedTag().value_or(kEditItem);
    const std::string title = tag == kExtraItem ? menu->currentText().toStdString() : "";
    const bool hasExtra = menu->hasTag(kExtraItem);
    check("menu of button " + std::to_string(button),
          {expected.tag, expected.title, expected.enabled, expected.tag == kExtraItem},
          {tag, title, menu->isEnabled(), hasExtra});
  }

  void kinds(const Controls& controls) {
    const auto* matrix = fHands.reach<CellMatrix>("outMainMatrixDevices");
    Json enabled = Json::array();
    for (int kind = 0; kind < matrix->columnCount(); ++kind) {
      enabled.push_back(matrix->cell(kind)->isEnabled());
    }
    check("device strip", {controls.kinds, controls.kind}, {enabled, matrix->selectedColumn()});
  }

  void check(const std::string& what, const Json& expected, const Json& actual) {
    compare(fProblems, what, expected, actual);
  }

 private:
  const Hands& fHands;
  Problems* fProblems;
};

Json identifiersOf(const std::array<bool, 4>& tabs) {
  Json identifiers = Json::array();
  for (int tab = 0; tab < 4; ++tab) {
    if (tabs.at(static_cast<std::size_t>(tab))) {
      identifiers.push_back(tab + 1);
    }
  }
  return identifiers;
}

}  // namespace

void compareControls(const PaneModel& model, const Hands& hands, Problems* problems) {
  const Controls& controls = model.controls();
  Comparison comparison(hands, problems);
  comparison.slider(SliderName::kSpeed, controls.speed, true);
  comparison.slider(SliderName::kAcceleration, controls.acceleration, controls.accelerationEnabled);
  comparison.slider(SliderName::kScrolling, controls.scrolling, true);
  comparison.text("labelSpeedDpi", std::to_string(speedOfPosition(controls.speed.position)) + " dpi");
  comparison.text("labelScrollAmount", std::to_string(controls.scrolling.position) + " per step");
  comparison.box(Box::kAccelerates, controls.accelerates, true);
  comparison.box(Box::kJump, controls.jump, true);
  comparison.row(controls.slow, Box::kSlow);
  comparison.row(controls.single, Box::kSingle);
  comparison.box(Box::kInertial, controls.inertial, true);
  comparison.check("direction", controls.inverted ? 0 : 1,
                   hands.reach<CellMatrix>("outScrollMatrixDirection")->selectedColumn());
  for (const auto& [button, menu] : controls.menus) {
    comparison.menu(model.deviceTab(), button, menu);
  }
  comparison.page("outScrollTabsDirection", controls.directionPage);
  comparison.page("outMainTabsDefaultsButton", controls.restorePage);
  comparison.page("outBtnTabsDevices", controls.buttonPage);
  comparison.check("root tabs", identifiersOf(controls.rootTabs), hands.shownTabs());
  comparison.check("root tab", controls.rootTab + 1, hands.shownTab());
  comparison.kinds(controls);
}

}  // namespace veltrix::model
