#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>

#include "editor/browser_column.h"
#include "editor/command_browser.h"
#include "editor/edit_controller.h"
#include "editor/editor_host.h"
#include "platform/bundle.h"
#include "platform/property_list.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::testing {

plist::Dictionary makeDictionary(std::initializer_list<plist::Entry> entries);

// An action editor with a tree of its own and the test in the place of the pane: the real dialog is shown,
// and the test does in it what a person would do.
class EditControllerTest : public ::testing::Test, public EditorHost {
 public:
  EditControllerTest();
  ~EditControllerTest() override;

 protected:
  // An editor of the commands in `tree`; of those that are shipped without one.
  void makeController(const plist::Array& tree);
  void makeControllerOfTheCatalogue();

  // Opens the editor for a button of `entry` and does `inDialog`; a dialog that is still open is cancelled.
  bool edit(std::int32_t button, const std::function<void()>& inDialog);

  // The same for button 3, which holds `action`, with OK at the end. Gives the action afterwards.
  plist::Dictionary editAction(plist::Dictionary action, const std::function<void()>& inDialog);

  // Shows button 3 with `action` and does `inDialog` before cancelling.
  void showAction(plist::Dictionary action, const std::function<void()>& inDialog);

  void setAction(const char* key, plist::Dictionary action);
  plist::Dictionary action(const char* key) const;  // the stored one

  // Only while the dialog is open, or after it was.
  template <typename Widget = QWidget>
  Widget* find(const char* name) const {
    auto* widget = dialog->findChild<Widget*>(name);
    if (widget == nullptr) {
      ADD_FAILURE() << "no widget " << name;
    }
    return widget;
  }
  int page() const;  // of the parameters
  QString text(const char* field) const;
  BrowserColumn& column(int number) const;
  int selected(int number) const { return column(number).selectedRow(); }

  // What a person does.
  void click(const char* name) const;
  void clickRow(int column, int row) const;
  void choose(int category, int row) const;                              // two clicks
  static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});  // where the focus is
  void type(const char* field, const char* text) const;                  // instead of what is there
  void ok() const { click("buttonEditOK"); }

  std::int32_t modalDialog(QDialog* window) override;
  void actModalButtonOK() override;
  void actModalButtonCancel() override;
  std::int32_t vtxCurDeviceTabIndex() const override { return device; }
  std::int32_t vtxCurAssignmentTabIndex(std::int32_t button) const override;

  plist::Dictionary entry;
  plist::Array snippets;
  std::int32_t device = 0;
  int dialogsRun = 0;
  QDialog* dialog = nullptr;
  std::unique_ptr<VeltrixEditController> controller;

 private:
  TemporaryFolder fResources;
  std::optional<Bundle> fBundle;
  QWidget fWindow;
  std::function<void()> fInDialog;
};

}  // namespace veltrix::testing
