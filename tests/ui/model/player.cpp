#include "tests/ui/model/player.h"

#include <gtest/gtest-spi.h>

#include <algorithm>
#include <sstream>

#include "actions/template_menu.h"
#include "platform/bundle.h"
#include "platform/property_list_io.h"
#include "tests/ui/model/sheet_hands.h"

namespace veltrix::model {
namespace {

constexpr int kMostDevices = 3;

constexpr Device kDevices[] = {{0x1020, 0x0102}, {0x2041, 0x0106}, {0x2041, 0x0107}, {0x1022, 0x0100},
                               {0x2048, 0x0200}, {0x8002, 0x0203}, {0x4444, 0x0100}};

Json resource(const char* name) {
  const auto document = plist::readFile(Bundle::standard().pathForResource(name, "plist"));
  return document ? jsonOf(document.value().root) : Json();
}

std::vector<int> templateTags() {
  std::vector<int> tags;
  for (const TemplateItem& item : templateMenu()) {
    if (item.title != nullptr && item.tag != kEditItem) {
      tags.push_back(item.tag);
    }
  }
  return tags;
}

template <typename T>
const T& pick(const std::vector<T>& from, int number) {
  return from.at(static_cast<std::size_t>(number) % from.size());
}

}  // namespace

Player::Player(const Scenario& scenario, Tally* tally)
    : fScenario(scenario),
      fTally(tally),
      fModel(Catalogue(resource("Assignments")), resource("DefaultSettings"),
             startDocument(resource("DefaultSettings"), scenario.tweaks), templateTags()),
      fEditor(fModel.catalogue()),
      fHands(resource("DefaultSettings"), fModel.file()) {}

std::string Player::play() {
  // What the hands miss in the pane is a difference like any other, and must not fail the run before the
  // scenario has been made as short as it can be.
  ::testing::TestPartResultArray missed;
  {
    const ::testing::ScopedFakeTestPartResultReporter reporter(&missed);
    fModel.open();
    fHands.open();
    check();
    for (std::size_t i = 0; i < fScenario.steps.size() && fProblems.empty() && missed.size() == 0; ++i) {
      take(fScenario.steps.at(i));
    }
  }
  for (int i = 0; i < missed.size(); ++i) {
    fProblems.emplace_back(missed.GetTestPartResult(i).message());
  }
  std::ostringstream report;
  if (!fProblems.empty()) {
    const Json factory = resource("DefaultSettings");
    const Json start = startDocument(factory, fScenario.tweaks);
    report << "starting with "
           << (same(factory, start) ? "the factory settings" : difference(factory, start));
    for (const std::string& step : fTrace) {
      report << "\n  " << step;
    }
    for (const std::string& problem : fProblems) {
      report << "\n-> " << problem;
    }
  }
  return report.str();
}

void Player::check() {
  compare(&fProblems, "messages", fModel.takeMessages(), fHands.takeMessages());
  compareDocuments(fModel, fHands, &fProblems);
  compareControls(fModel, fHands, &fProblems);
}

void Player::acting(const std::function<void()>& action, const std::function<void(QDialog*)>& dialog) {
  const Hands::Seen seen = Hands::watching(action, [&](QDialog* shown) {
    if (dialog) {
      dialog(shown);
    }
  });
  if ((seen != Hands::Seen::kNoDialog) != static_cast<bool>(dialog)) {
    fProblems.emplace_back(dialog ? "no dialog came up" : "a dialog came up");
  } else if (seen == Hands::Seen::kDialogThatStayed && fProblems.empty()) {
    fProblems.emplace_back("the dialog stayed");
  }
}

void Player::take(const Step& step) {
  const std::size_t before = fTrace.size();
  act(step);
  if (fTrace.size() > before) {
    ++fTally->steps.at(static_cast<std::size_t>(step.kind));
  }
  check();
}

void Player::act(const Step& step) {
  switch (step.kind) {
    case StepKind::kTab:
      openTab(step);
      break;
    case StepKind::kBox:
      clickBox(step);
      break;
    case StepKind::kSlider:
      pressSlider(step);
      break;
    case StepKind::kDirection:
      clickDirection(step);
      break;
    case StepKind::kMenu:
      chooseInMenu(step);
      break;
    case StepKind::kEdit:
      editButton(step);
      break;
    case StepKind::kRestore:
      restore();
      break;
    case StepKind::kScrollParameters:
      editParameters(step);
      break;
    case StepKind::kPlug:
      plug(step);
      break;
    case StepKind::kKind:
      chooseKind(step);
      break;
    case StepKind::kAccess:
      toggleAccess();
      break;
    case StepKind::kResign:
      note("turn to another program");
      fModel.resignActive();
      acting([&] { fHands.resignActive(); });
      break;
    case StepKind::kLeaveAndReturn:
      note("leave the pane and return");
      fModel.leave();
      fModel.comeBack();
      acting([&] { fHands.leaveAndReturn(); });
      break;
    case StepKind::kReopen:
      note("open the pane anew");
      fModel.leave();
      fModel.open();
      fEditor = EditorModel(fModel.catalogue());
      acting([&] { fHands.reopen(); });
      break;
  }
}

void Player::openTab(const Step& step) {
  const int tab = step.which % 4;
  if (fModel.openTab(tab)) {
    note("open tab " + std::to_string(tab + 1));
    acting([&] { fHands.clickTab(tab); });
  }
}

void Player::clickBox(const Step& step) {
  const auto box = static_cast<Box>(step.which % kBoxes);
  if (!fModel.clickBox(box)) {
    return;
  }
  note(std::string("click ") + Hands::nameOf(box));
  if (fModel.takeWarning()) {
    ++fTally->warnings;
    acting([&] { fHands.clickBox(box); },
           [](QDialog* dialog) { clickBoxOf(dialog, "buttonAccessibilityOK"); });
  } else {
    acting([&] { fHands.clickBox(box); });
  }
}

void Player::pressSlider(const Step& step) {
  const auto slider = static_cast<SliderName>(step.which % 3);
  const auto key = static_cast<SliderKey>(step.what % 6);
  if (fModel.pressSlider(slider, key)) {
    note(std::string("press key ") + std::to_string(step.what % 6) + " on " + Hands::nameOf(slider));
    acting([&] { fHands.pressSlider(slider, key); });
  }
}

void Player::clickDirection(const Step& step) {
  const bool inverted = step.which % 2 == 0;
  if (fModel.clickDirection(inverted)) {
    note(inverted ? "choose the inverted direction" : "choose the usual direction");
    acting([&] { fHands.clickDirection(inverted); });
  }
}

void Player::chooseInMenu(const Step& step) {
  const std::vector<int> buttons = buttonsOf(fModel.deviceTab());
  if (buttons.empty()) {
    return;
  }
  const int button = pick(buttons, step.which);
  std::vector<int> tags = fModel.menuTags();
  if (fModel.controls().menus.at(button).tag == kExtraItem) {
    tags.push_back(kExtraItem);
  }
  // The first four, clicks, as often as all others: the rules are about them.
  const int tag =
      step.what % 2 == 0 ? tags.at(static_cast<std::size_t>(step.what / 2 % 4)) : pick(tags, step.what / 2);
  if (fModel.chooseMenu(button, tag)) {
    note("choose item " + std::to_string(tag) + " in the menu of button " + std::to_string(button));
    acting([&] { fHands.chooseMenu(fModel.deviceTab(), button, tag); });
  }
}

void Player::restore() {
  if (fModel.restoreDefaults()) {
    note("restore defaults");
    acting([&] { fHands.clickRestore(); });
  }
}

void Player::plug(const Step& step) {
  std::vector<Device> devices;
  std::ostringstream names;
  for (int i = 0, number = step.what; i < step.which % (kMostDevices + 1); ++i, number /= 7) {
    devices.push_back(kDevices[number % 7]);
    names << ' ' << std::hex << devices.back().product << '/' << devices.back().version;
  }
  note("plug in" + (devices.empty() ? " nothing" : names.str()));
  fModel.plug(devices);
  acting([&] { fHands.plugDevices(devices); });
}

void Player::chooseKind(const Step& step) {
  const int kind = step.which % 5;
  if (fModel.chooseKind(kind)) {
    note("choose kind " + std::to_string(kind));
    acting([&] { fHands.clickKind(kind); });
  }
}

void Player::toggleAccess() {
  fAccess = !fAccess;
  note(fAccess ? "grant access" : "withdraw access");
  fModel.grantAccess(fAccess);
  acting([&] { fHands.setAccess(fAccess); });
}

}  // namespace veltrix::model
