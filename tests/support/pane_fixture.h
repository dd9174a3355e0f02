#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QTabWidget>
#include <QWidget>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "helperlink/device_list.h"
#include "pane/assignment_menu.h"
#include "pane/controller.h"
#include "pane/host_notifications.h"
#include "pane/pref_pane.h"
#include "platform/property_list.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::testing {

// A pane in a window, with files in a folder of its own and a helper that is a few variables. Widgets are
// found by their names; what the pane does to the outside is in `log`, in order.
class PaneTest : public ::testing::Test {
 public:
  PaneTest();
  ~PaneTest() override;

 protected:
  // The factory document and the user's file; to be called before the pane is made. Without the latter there
  // is no user file.
  void writeDefaults(const plist::Dictionary& document);
  void writeUserFile(const plist::Dictionary& document);
  plist::Dictionary userFile() const;  // null when there is none
  plist::Dictionary userEntry(std::uint16_t productId, std::size_t which = 0) const;  // of the file
  plist::Dictionary userOptions(std::uint16_t productId) const;                       // of the file

  // What a pane is given to reach the outside; the test must outlive it.
  PaneServices makeServices();

  // Creates the pane and loads its main view; nothing more.
  void makePane();

  // The host's whole way into the pane, and a window around it.
  void openPane();

  // Plugs devices in (and all others out); a poll shows them.
  struct Plugged {
    std::uint16_t productId;
    std::uint16_t version;
  };
  void plug(const std::vector<Plugged>& devices);
  void plugAndPoll(const std::vector<Plugged>& devices);
  void grantAccess(bool granted);

  template <typename Widget = QWidget>
  Widget* find(const char* name) const {
    auto* widget = pane->mainView()->findChild<Widget*>(name);
    if (widget == nullptr) {
      ADD_FAILURE() << "no widget " << name;
    }
    return widget;
  }

  // Real clicks and keys; the root tab of the control is opened first.
  void click(const char* name) const;
  void press(const char* name, Qt::Key key) const;
  void openRootTab(int identifier) const;

  // Opens the menu of a button and clicks the item of that tag.
  static void choose(AssignmentMenu* menu, std::int32_t tag);

  bool isChecked(const char* name) const { return find<QAbstractButton>(name)->isChecked(); }
  bool isEnabled(const char* name) const { return find(name)->isEnabled(); }
  std::vector<int> rootTabs() const;  // the identifiers of the tabs that are shown, in order
  int selectedRootTab() const;        // the identifier

  // What a person does in a dialog that is about to run.
  static void whenDialogRuns(std::function<void(QDialog*)> action);

  TemporaryFolder home;
  VeltrixDeviceList helperDevices{};
  std::int32_t helperStatus = 0;  // of a poll
  std::int16_t helperProcess = 0;
  std::uint32_t systemVersion = 0x1090;
  std::chrono::system_clock::time_point now{};
  std::vector<std::string> log;
  std::function<void(const std::string&)> onMessage;  // called before a message is recorded
  std::function<void(const DeviceState&)> deviceStateConsumer;
  DriverStatusConsumer driverStatusConsumer;
  HostNotifications notifications;
  std::unique_ptr<VeltrixPrefPane> pane;

 private:
  void record(std::string event) { log.push_back(std::move(event)); }

  std::unique_ptr<QWidget> fWindow;
};

// A device entry with every key that the pane reads, of unremarkable values.
plist::Dictionary makeEntry(std::uint16_t productId, std::uint16_t versionMin = 0,
                            std::uint16_t versionMax = 0);

// A document of version 2 with those entries and no snippets.
plist::Dictionary makeDocument(const std::vector<plist::Dictionary>& entries);

// One entry for each model.
plist::Dictionary makeUsualDocument();

}  // namespace veltrix::testing
