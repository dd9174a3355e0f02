#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/pane_fixture.h"
#include "tests/ui/model/pane_model.h"

namespace veltrix::model {

// A person's hands on the real pane: every method clicks or types as a person would, and does not look at
// what comes of it.
class Hands : public testing::PaneTest {
 public:
  Hands(const Json& factory, const Json& file);

  void open();
  void reopen();  // left first, then made anew
  void leaveAndReturn();
  void resignActive();
  void plugDevices(const std::vector<Device>& devices);
  void setAccess(bool granted) { grantAccess(granted); }

  void clickTab(int tab) { openRootTab(tab + 1); }
  void clickBox(Box box);
  void pressSlider(SliderName name, SliderKey key);
  void clickDirection(bool inverted);
  void chooseMenu(int deviceTab, int button, int tag);
  void clickKind(int kind);
  void clickRestore();
  void clickParameters();

  // Does something with `dialog` ready for the dialog that comes up meanwhile; a dialog that is still there
  // afterwards is closed. Nothing thrown may leave `dialog`.
  enum class Seen { kNoDialog, kDialog, kDialogThatStayed };
  static Seen watching(const std::function<void()>& action, const std::function<void(QDialog*)>& dialog);

  template <typename Widget>
  Widget* reach(const char* name) const {
    return find<Widget>(name);
  }
  AssignmentMenu* menu(int deviceTab, int button) const;
  static const char* nameOf(Box box);
  static const char* nameOf(SliderName slider);
  static Qt::Key keyOf(SliderKey key);
  std::vector<int> shownTabs() const { return rootTabs(); }
  int shownTab() const { return selectedRootTab(); }

  Json file() const { return jsonOf(userFile()); }
  std::vector<std::string> takeMessages();  // to the helper

 private:
  void TestBody() override {}
};

}  // namespace veltrix::model
