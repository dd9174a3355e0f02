#include "tests/support/pane_fixture.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDialog>
#include <QScrollArea>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <filesystem>
#include <utility>

#include "helperlink/device_kinds.h"
#include "platform/bundle.h"
#include "tests/support/property_list_files.h"

namespace veltrix::testing {
namespace {

constexpr const char* kUserFile = "Library/Preferences/com.aldmoor.veltrix.settings.plist";

std::string nameOf(std::uint32_t message) {
  std::string name;
  for (int shift = 24; shift >= 0; shift -= 8) {
    name += static_cast<char>((message >> static_cast<unsigned>(shift)) & 0xFFU);
  }
  return name;
}

plist::Dictionary makeAction(int command) {
  plist::Dictionary action = plist::Dictionary::create();
  action.set("cmd", command);
  return action;
}

}  // namespace

plist::Dictionary makeEntry(std::uint16_t productId, std::uint16_t versionMin, std::uint16_t versionMax) {
  plist::Dictionary options = plist::Dictionary::create();
  options.set("speed", 400);
  options.set("accelerate", true);
  options.set("acceleration", 1.0);
  for (const char* key : {"jump", "slow", "single", "inertial scroll", "invert wheel"}) {
    options.set(key, false);
  }
  options.set("slow keys", 0);
  options.set("single keys", 0);
  plist::Dictionary buttons = plist::Dictionary::create();
  buttons.set("00", makeAction(1));
  plist::Dictionary wheel = makeAction(20);
  wheel.set("cnt", 3);
  buttons.set("12", wheel);

  plist::Dictionary entry = plist::Dictionary::create();
  entry.set("dict version", 1);
  entry.set("driver enabled", true);
  entry.set("device vendor id", kFamilyVendorId);
  entry.set("device product id", productId);
  entry.set("device version min", versionMin);
  entry.set("device version max", versionMax);
  entry.set("options", options);
  entry.set("buttons", buttons);
  return entry;
}

plist::Dictionary makeDocument(const std::vector<plist::Dictionary>& entries) {
  plist::Array devices = plist::Array::create();
  for (const plist::Dictionary& entry : entries) {
    devices.append(entry);
  }
  plist::Dictionary document = plist::Dictionary::create();
  document.set("version", 2);
  document.set("devices", devices);
  document.set("snippets", plist::Array::create());
  return document;
}

plist::Dictionary makeUsualDocument() {
  return makeDocument({makeEntry(0x1020), makeEntry(0x2041, 0, 0x0106), makeEntry(0x2041, 0x0107, 0),
                       makeEntry(0x1022), makeEntry(0x2048), makeEntry(0x8002)});
}

PaneTest::PaneTest() {
  // Names of keys are those of one layout, whatever desktop the test runs on.
  qunsetenv("DISPLAY");
  qunsetenv("WAYLAND_DISPLAY");
  qputenv("XKB_DEFAULT_LAYOUT", "us");
  writeDefaults(makeUsualDocument());
  std::filesystem::copy_file(Bundle::standard().pathForResource("Assignments", "plist"),
                             home / "bundle/Assignments.plist");
}

PaneTest::~PaneTest() {
  pane.reset();
  fWindow.reset();
}

void PaneTest::writeDefaults(const plist::Dictionary& document) {
  writePlist(home / "bundle/DefaultSettings.plist", document);
  plist::Dictionary info = plist::Dictionary::create();
  info.set("CFBundleVersion", "4.5.6");
  writePlist(home / "bundle/Info.plist", info);
}

void PaneTest::writeUserFile(const plist::Dictionary& document) {
  writePlist(home / kUserFile, document);
}

plist::Dictionary PaneTest::userFile() const {
  return readPlist(home / kUserFile);
}

plist::Dictionary PaneTest::userEntry(std::uint16_t productId, std::size_t which) const {
  std::size_t seen = 0;
  const plist::Array devices = userFile().arrayFor("devices");
  for (const plist::Value& each : devices.items()) {
    if (each.asDictionary().uint16For("device product id") == productId && seen++ == which) {
      return each.asDictionary();
    }
  }
  return {};
}

plist::Dictionary PaneTest::userOptions(std::uint16_t productId) const {
  return userEntry(productId).dictionaryFor("options");
}

PaneServices PaneTest::makeServices() {
  PaneServices services;
  services.settings.settingsPath = home / kUserFile;
  services.settings.defaultsPath = home / "bundle/DefaultSettings.plist";
  const auto send = [this](std::uint32_t message) {
    if (onMessage) {
      onMessage(nameOf(message));
    }
    record(nameOf(message));
    return 0;
  };
  services.settings.sendMessageToHelper = send;
  services.sendMessageToHelper = send;
  services.findHelper = [this] { return helperProcess; };
  services.launchApplication = [this](const std::string& path) { record("launch " + path); };
  services.addLoginItem = [this](const std::string& path) { record("login " + path); };
  services.getConnectedDevices = [this](VeltrixDeviceList* list) {
    record("poll");
    if (helperStatus == 0) {
      *list = helperDevices;
    }
    return helperStatus;
  };
  services.systemVersion = [this] { return systemVersion; };
  services.openUrl = [this](const std::string& url) { record("url " + url); };
  services.openFile = [this](const std::string& path) { record("open " + path); };
  services.selectFile = [this](const std::string& path) { record("select " + path); };
  services.homeDirectory = [this] { return home.path(); };
  services.now = [this] { return now; };
  services.osRelease = [] { return OsRelease{12, 5, 0}; };
  services.setDeviceStateConsumer = [this](std::function<void(const DeviceState&)> consumer) {
    deviceStateConsumer = std::move(consumer);
  };
  services.setDriverStatusConsumer = [this](DriverStatusConsumer consumer) {
    driverStatusConsumer = std::move(consumer);
  };
  return services;
}

void PaneTest::makePane() {
  pane = VeltrixPrefPane::initWithBundle(Bundle(home / "bundle"), makeServices(), &notifications);
  fWindow = std::make_unique<QWidget>();
  auto* layout = new QVBoxLayout(fWindow.get());
  layout->addWidget(pane->loadMainView());
}

void PaneTest::openPane() {
  makePane();
  pane->mainViewDidLoad();
  pane->didSelect();
  fWindow->resize(900, 800);
  fWindow->show();
  fWindow->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(fWindow.get()));
}

void PaneTest::plug(const std::vector<Plugged>& devices) {
  const std::uint16_t state = helperDevices.helperState;
  helperDevices = {};
  helperDevices.helperState = state;
  for (const Plugged& device : devices) {
    VeltrixDeviceEntry& entry = helperDevices.device[helperDevices.count++];
    entry.vendorID = kFamilyVendorId;
    entry.productID = device.productId;
    entry.productVers = device.version;
  }
}

void PaneTest::plugAndPoll(const std::vector<Plugged>& devices) {
  plug(devices);
  pane->vtxCheckDevices();
}

void PaneTest::grantAccess(bool granted) {
  helperDevices.helperState = granted ? kVeltrixHelperStateAccessibility : 0;
  if (pane != nullptr) {
    pane->vtxCheckDevices();
  }
}

void PaneTest::openRootTab(int identifier) const {
  auto* tabs = find<QTabWidget>("outMainTabsRoot");
  for (int i = 0; i < tabs->count(); ++i) {
    if (tabs->widget(i)->property("identifier").toInt() == identifier) {
      QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, Qt::NoModifier, tabs->tabBar()->tabRect(i).center());
      EXPECT_EQ(tabs->currentIndex(), i);
      return;
    }
  }
  ADD_FAILURE() << "no root tab " << identifier;
}

void PaneTest::click(const char* name) const {
  auto* widget = find(name);
  auto* tabs = find<QTabWidget>("outMainTabsRoot");
  for (int i = 0; i < tabs->count(); ++i) {
    if (tabs->widget(i)->isAncestorOf(widget)) {
      openRootTab(tabs->widget(i)->property("identifier").toInt());
    }
  }
  EXPECT_TRUE(widget->isVisible()) << name;
  // A check box answers where its box and its text are.
  const QPoint where(widget->layoutDirection() == Qt::RightToLeft ? widget->width() - 8 : 8,
                     widget->height() / 2);
  QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, where);
}

void PaneTest::press(const char* name, Qt::Key key) const {
  auto* widget = find(name);
  auto* tabs = find<QTabWidget>("outMainTabsRoot");
  for (int i = 0; i < tabs->count(); ++i) {
    if (tabs->widget(i)->isAncestorOf(widget)) {
      tabs->setCurrentIndex(i);
    }
  }
  widget->setFocus();
  QTest::keyClick(widget, key);
}

void PaneTest::choose(AssignmentMenu* menu, std::int32_t tag) {
  ASSERT_TRUE(menu->isVisible() && menu->isEnabled());
  const int index = menu->findData(tag);
  ASSERT_GE(index, 0) << "no item of tag " << tag;
  menu->showPopup();
  QAbstractItemView* const view = menu->view();
  view->scrollTo(menu->model()->index(index, 0));
  const QRect item = view->visualRect(menu->model()->index(index, 0));
  QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, item.center());
}

std::vector<int> PaneTest::rootTabs() const {
  const auto* tabs = find<QTabWidget>("outMainTabsRoot");
  std::vector<int> identifiers;
  identifiers.reserve(static_cast<std::size_t>(tabs->count()));
  for (int i = 0; i < tabs->count(); ++i) {
    identifiers.push_back(tabs->widget(i)->property("identifier").toInt());
  }
  return identifiers;
}

int PaneTest::selectedRootTab() const {
  return find<QTabWidget>("outMainTabsRoot")->currentWidget()->property("identifier").toInt();
}

void PaneTest::whenDialogRuns(std::function<void(QDialog*)> action) {
  QTimer::singleShot(0, qApp, [action = std::move(action)] {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      auto* dialog = qobject_cast<QDialog*>(widget);
      if (dialog != nullptr && dialog->isVisible()) {
        action(dialog);
        return;
      }
    }
  });
}

}  // namespace veltrix::testing
