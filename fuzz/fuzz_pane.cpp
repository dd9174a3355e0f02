// The pane with settings, factory settings and a command tree of any contents: everything is shown, used by
// somebody whom the input leads, and saved.
//
// An input is the number of the bytes that lead (two bytes, the low one first), these bytes, and a property
// list with "settings", "factory" and "tree"; what it does not hold is what the product ships. Each is then
// spoiled as the bytes say.

#include <QApplication>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "editor/edit_controller.h"
#include "fuzz/byte_source.h"
#include "fuzz/pane_person.h"
#include "fuzz/pane_surroundings.h"
#include "helperlink/device_kinds.h"
#include "keyboard/keystroke_application.h"
#include "pane/controller.h"
#include "pane/host_notifications.h"
#include "pane/outlets.h"
#include "pane/pref_pane.h"
#include "platform/property_list_io.h"
#include "settings/command_classes.h"
#include "settings/settings_keys.h"

namespace {

using veltrix::plist::Array;
using veltrix::plist::Dictionary;

constexpr int kMostDeeds = 24;

// The pane in its window, as the host opens it.
class OpenPane {
 public:
  OpenPane(const VeltrixDeviceList& devices, ByteSource* bytes) : fDevices(devices), fBytes(bytes) {
    constexpr std::array kSystems = {0x1060U, 0x1070U, 0x1090U};
    const std::uint32_t system = kSystems[bytes->below(kSystems.size())];
    fPane = VeltrixPrefPane::initWithBundle(veltrix::Bundle(paneBundle()),
                                            makePaneServices(&fDevices, system), &fNotifications);
    auto* rows = new QVBoxLayout(&fWindow);
    rows->addWidget(fPane->loadMainView());
    gVeltrixEditController->setChoosers(makeChoosers(bytes));
    fPane->mainViewDidLoad();
    fPane->didSelect();
    fWindow.show();
    fWindow.activateWindow();
    QCoreApplication::processEvents();
    checkClicks();
  }

  void doSomething(PanePerson* person) {
    switch (fBytes->below(12)) {
      case 0:
        gVeltrixController->actEditAssignment(static_cast<std::int32_t>(fBytes->below(16)));
        break;
      case 1:
        gVeltrixController->actButtonEditScrollParams();
        break;
      case 2:
        gVeltrixController->actButtonRestoreDefaults();
        break;
      case 3:
        gVeltrixController->actButtonSaveInformation();
        break;
      case 4:
        fPane->sysPrefDidResignActive();
        checkFile();
        break;
      case 5:
        exchangeDevices();
        break;
      case 6:
        showNextTab();
        break;
      default:
        person->useSomething(fPane->mainView());
        break;
    }
    person->finishPopup();
    QCoreApplication::processEvents();
    checkClicks();
  }

  void leave() {
    fPane->willUnselect();
    checkFile();
  }

 private:
  void exchangeDevices() {
    fDevices.count = 0;
    fPane->vtxCheckDevices();
    fDevices = chooseDevices(fBytes);
    fPane->vtxCheckDevices();
  }

  void showNextTab() {
    auto* tabs = fPane->mainView()->findChild<QTabWidget*>(QStringLiteral("outMainTabsRoot"));
    tabs->setCurrentIndex((tabs->currentIndex() + 1) % std::max(tabs->count(), 1));
  }

  // Somebody can still click, be it with modifiers, with a trackball whose menus are shown. With several
  // trackballs it is the person who chooses the entry.
  void checkClicks() const {
    std::uint32_t deviceTab = 0;
    const std::int32_t index = gVeltrixController->vtxFindSettingsForDevice(0, &deviceTab);
    if (fDevices.count != 1 || deviceTab == veltrix::kNoDeviceTab) {
      return;
    }
    const Array entries = gVeltrixController->vtxGetSettingsArray();
    const Dictionary buttons =
        entries.at(static_cast<std::size_t>(index)).asDictionary().dictionaryFor(veltrix::keys::kButtons);
    const auto clicks = [&buttons](const char* key) {
      return buttons.dictionaryFor(key).int32For(veltrix::keys::kCommand) == veltrix::kPrimaryClickCommand;
    };
    if (buttons.dictionaryFor("00")) {
      require(clicks("00") || clicks("01") || clicks("02") || clicks("03"));
    }
  }

  // What was just saved, if it could be, is what is in memory.
  static void checkFile() {
    const Array entries = gVeltrixController->vtxGetSettingsArray();
    if (!entries || gVeltrixController->saveError()) {
      return;
    }
    const auto file = veltrix::plist::readFile(paneSettingsFile());
    require(file.ok());
    require(
        veltrix::plist::equal(file.value().root.asDictionary().arrayFor(veltrix::keys::kDevices), entries));
  }

  VeltrixDeviceList fDevices;
  ByteSource* fBytes;
  veltrix::HostNotifications fNotifications;
  std::unique_ptr<VeltrixPrefPane> fPane;
  QWidget fWindow;
};

void run(std::string_view input) {
  ByteSource whole(input);
  const std::size_t leading = whole.word();
  ByteSource bytes(whole.take(leading));
  const auto list = veltrix::plist::read(whole.rest());
  writePaneFiles(list ? list.value().root.asDictionary() : Dictionary(), &bytes);
  const VeltrixDeviceList devices = chooseDevices(&bytes);
  PanePerson person(&bytes);
  OpenPane pane(devices, &bytes);
  for (int i = 0; i < kMostDeeds && !bytes.isAtEnd(); ++i) {
    pane.doSomething(&person);
  }
  pane.leave();
}

}  // namespace

// Every run makes hundreds of widgets, for which short stack traces and a small quarantine make a difference.
extern "C" const char* __asan_default_options() {
  return "malloc_context_size=8:quarantine_size_mb=32";
}

// What the font library allocates once for the process it never frees.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\n";
}

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  unsetenv("DISPLAY");
  unsetenv("WAYLAND_DISPLAY");
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("XKB_DEFAULT_LAYOUT", "us", 1);
  setenv("VELTRIX_RESOURCES", VELTRIX_BUNDLE_FOLDER, 1);
  setenv("HOME", paneHome().c_str(), 1);
  static std::vector<char*> arguments(*argv, *argv + *argc);
  // The toolkit keeps what it has made once, so a look after each run would look nearly always; that at the
  // end stays.
  static std::string atTheEnd = "-detect_leaks=0";
  arguments.push_back(atTheEnd.data());
  arguments.push_back(nullptr);
  *argc = static_cast<int>(arguments.size()) - 1;
  *argv = arguments.data();
  static int one = 1;
  static veltrix::KeystrokeApplication* const theApplication = new veltrix::KeystrokeApplication(one, *argv);
  theApplication->setQuitOnLastWindowClosed(false);
  // The offscreen platform says of every window what it does not support.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  run({reinterpret_cast<const char*>(data), size});
  return 0;
}
