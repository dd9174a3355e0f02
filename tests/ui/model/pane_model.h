#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "tests/ui/model/devices.h"
#include "tests/ui/model/menus.h"
#include "tests/ui/model/positions.h"

namespace veltrix::model {

enum RootTab { kButtonsTab, kPointerTab, kScrollingTab, kHelpTab };

// A check box with the four modifier keys that it lets a person choose.
struct KeyRow {
  bool on = false;
  bool keysEnabled = false;
  std::array<bool, 4> keys{};  // Command, Shift, Option, Control
};

struct Controls {
  Slider speed, acceleration, scrolling;
  bool accelerates = false;
  bool accelerationEnabled = false;
  bool jump = false;
  KeyRow slow, single;
  bool inertial = false;
  bool inverted = false;  // which of the two cells is selected
  int directionPage = 0;
  std::map<int, Menu> menus;  // by button, of the current device
  std::array<bool, 4> rootTabs{true, true, true, true};
  int rootTab = kButtonsTab;
  int restorePage = 0;
  int buttonPage = 0;
  std::array<bool, 5> kinds{};  // cells of the device strip that are enabled
  int kind = -1;                // the selected one
};

// Every box and toggle button that stores a state, with what it does.
enum class Box {
  kAccelerates,
  kJump,
  kSlow,
  kSlowCommand,
  kSlowShift,
  kSlowOption,
  kSlowControl,
  kSingle,
  kSingleCommand,
  kSingleShift,
  kSingleOption,
  kSingleControl,
  kInertial,
};
inline constexpr int kBoxes = 13;

enum class SliderName { kSpeed, kAcceleration, kScrolling };

// What the pane holds, shows and stores, by rules of its own. Every method is one thing that a person or the
// system does; those that a person can be kept from return whether it can be done, and change nothing if not.
class PaneModel {
 public:
  // `file` is the user's; `menuTags` the commands of the template menu.
  PaneModel(Catalogue catalogue, Json factory, Json file, std::vector<int> menuTags);

  void open();  // the pane is made, loaded and shown
  void leave();
  void comeBack();
  void resignActive();
  void plug(std::vector<Device> devices);  // and the poll that follows
  void grantAccess(bool granted);

  bool openTab(int tab);
  bool clickBox(Box box);
  bool pressSlider(SliderName name, SliderKey key);
  bool clickDirection(bool inverted);
  bool chooseMenu(int button, int tag);  // not the edit item
  bool chooseKind(int kind);
  bool restoreDefaults();

  bool canEdit(int button) const;   // whether its menu can be opened
  Json& editedAction(int button);   // in the shown entry
  void endEditing(bool confirmed);  // with the action stored
  bool canEditParameters() const;
  void storeParameters(const Json& parameters);

  Json& entry() { return fDocument.at("devices").at(static_cast<std::size_t>(fEntry)); }
  const Json& entry() const { return fDocument.at("devices").at(static_cast<std::size_t>(fEntry)); }
  int entryIndex() const { return fEntry; }
  int deviceTab() const { return fDeviceTab; }
  const Json& document() const { return fDocument; }
  Json& snippets() { return fDocument["snippets"]; }
  const Json& file() const { return fFile; }
  const Controls& controls() const { return fControls; }
  const Catalogue& catalogue() const { return fCatalogue; }
  const std::vector<int>& menuTags() const { return fMenuTags; }
  bool hasParameterButton() const { return fHasParameterButton; }

  // Since they were taken last: the messages to the helper, and whether the warning sheet was shown.
  std::vector<std::string> takeMessages();
  bool takeWarning();

 private:
  void fill();
  void fillMenus();
  void fillPointer();
  void fillScrolling();
  void fillTabs();
  void showTab(int tab, bool shown);
  void updateRestorePage();
  void read();
  void readMenus();
  bool readJump();
  void save();
  void changed(bool refill);
  void selectTab(int tab);
  void poll();
  void showEntryFor(std::uint16_t preferred);
  bool* stateOf(Box box);
  bool isEnabled(Box box) const;

  Catalogue fCatalogue;
  Json fFactory;
  Json fFile;
  std::vector<int> fMenuTags;
  Json fDocument;
  int fEntry = 0;
  int fDeviceTab = kNoDevice;
  Controls fControls;
  bool fHasParameterButton = false;
  std::vector<Device> fPlugged, fKnown;
  int fKnownCount = -1;
  bool fAccess = false;
  std::vector<std::string> fMessages;
  bool fWarned = false;
};

}  // namespace veltrix::model
