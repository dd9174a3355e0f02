#pragma once

#include <QObject>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "editor/editor_host.h"
#include "helperlink/device_list.h"
#include "pane/page_tables.h"
#include "pane/pane_services.h"
#include "platform/property_list.h"
#include "settings/modifier_keys.h"
#include "settings/settings_store.h"

class QAbstractButton;
class QCheckBox;
class QDialog;
class QTabWidget;
class QWidget;
class VeltrixEditController;
class VeltrixParamController;
class VeltrixPrefPane;

namespace veltrix {
class AssignmentMenu;
struct MenuChoice;
struct Outlets;
}  // namespace veltrix

// Shows one device entry of the settings at a time and writes every change of a control at once: into the
// entry, to the file, and as a message to the helper. Methods named act... are the actions of controls,
// fields named out... are the controls; a control whose change has to be followed by others carries the tag
// kRefreshTag. On the main thread only.
class VeltrixController : public QObject, public veltrix::SettingsStore, public veltrix::EditorHost {
  Q_OBJECT

 public:
  static constexpr int kRefreshTag = 71;

  // The pane and the outlets must outlive the controller.
  VeltrixController(VeltrixPrefPane* pane, veltrix::Outlets* outlets, const veltrix::PaneServices& services);
  ~VeltrixController() override;

  // The editors, which must outlive the controller; before awakeFromNib.
  void connectEditors(VeltrixEditController* edit, VeltrixParamController* params);

  // Lifecycle.
  void awakeFromNib();  // once, when all widgets have been made
  void vtxPrefPaneDidSelect();
  void vtxPrefPaneWillUnselect();
  void vtxPrefPaneDidBecomeKey();
  void vtxPrefPaneDidResignActive();
  void actUpdateSettings(QObject* sender);

  // Controls.
  void vtxGetUIFromSettings();
  void vtxGetSettingsFromUI();  // does not save
  void vtxUpdateRestoreButton();

  // The menus of the buttons. `forAssignment` is the number of the button that the menu belongs to.
  void vtxUpdateMenu(veltrix::AssignmentMenu* menu, std::int32_t forAssignment);
  void vtxGetButtonAssignment(veltrix::plist::Dictionary action, veltrix::AssignmentMenu* fromMenu);
  void actUpdateSettingsFromBtnMenu();
  void actEditAssignment(std::int32_t button);

  // Tabs. Indices are those of all four root tabs, shown or not.
  void vtxSaveTabs();
  bool vtxShowHideTab(std::int16_t index, bool visible);  // true when something changed
  void tabView(QTabWidget* tabView, int didSelectTabViewItem);
  std::int32_t vtxCurDeviceTabIndex() const override { return SettingsStore::vtxCurDeviceTabIndex(); }
  std::int32_t vtxCurAssignmentTabIndex(std::int32_t button) const override;

  // Devices.
  void vtxUpdateDeviceList(const VeltrixDeviceList* list);
  void vtxReceiveDeviceState(const veltrix::DeviceState& state);
  void actSelectDevice();
  void actButtonDriver();  // opens the sheet about the driver

  // Commands.
  void actButtonRestoreDefaults();
  void actButtonSaveInformation();  // the document as it stands, saved or not, goes into the report
  void actButtonOpenLink(QObject* sender);
  void actScrollMatrixDirection();
  void actButtonEditScrollParams();
  void vtxUpdateHelpLabels();

  // Runs `window` as a sheet of the pane's window and returns when it is closed: 1 for OK, 0 for Cancel
  // (closing it in another way is that, too), -1000 at once without a window.
  std::int32_t modalDialog(QDialog* window) override;
  void actModalButtonOK() override;
  void actModalButtonCancel() override;
  bool dialogRuns() const { return fModalWindow != nullptr; }

 private:
  struct RootTabItem {
    QWidget* page = nullptr;
    QString title;
  };

  static constexpr std::size_t kMostMenus = 6;
  static constexpr std::size_t kButtonGroups = 6;
  using ButtonMenus = std::array<veltrix::AssignmentMenu*, kMostMenus>;

  struct ButtonMenu {
    veltrix::AssignmentMenu* menu;
    std::int32_t button;
  };

  void connectActions();
  void connectCommands();
  void fillButtonGroups();
  void copyTemplateMenu();
  std::vector<ButtonMenu> currentMenus() const;
  void fillButtonMenus();
  void readButtonMenus();
  QString titleOf(const veltrix::MenuChoice& choice) const;
  void fillPointerControls(const veltrix::plist::Dictionary& options);
  void fillScrollingTab();
  void fillScrollingControls(const veltrix::plist::Dictionary& options);
  void readPointerControls(veltrix::plist::Dictionary options);
  void readScrollingControls(veltrix::plist::Dictionary options);
  bool readJump(const veltrix::plist::Dictionary& options);
  void showSpeed();
  void showAcceleration();
  void showScrollAmount();
  void updateReadouts();
  std::array<QAbstractButton*, 4> slowKeyButtons() const;
  std::array<QAbstractButton*, 4> axisKeyButtons() const;
  bool helperHasAccess() const;
  veltrix::plist::Dictionary wheelAction() const;
  void findAndShowSettings(std::uint16_t productId);
  void showOneDevice(const VeltrixDeviceList& list);
  void followDriver();
  void showDriver();

  VeltrixPrefPane* fPane;
  veltrix::Outlets* fOutlets;
  veltrix::PaneServices fServices;
  std::array<RootTabItem, veltrix::kRootTabCount> fRootTabItems;
  std::array<bool, veltrix::kRootTabCount> fRootTabVisible{};
  VeltrixEditController* outControllerEdit = nullptr;
  VeltrixParamController* outControllerParams = nullptr;
  ButtonMenus fDev1ButtonMenu{}, fDev2ButtonMenu{}, fDev3ButtonMenu{};
  ButtonMenus fDev4ButtonMenu{}, fDev5ButtonMenu{}, fDev6ButtonMenu{};
  std::array<ButtonMenus*, kButtonGroups> fButtonMenuList{};
  std::array<std::span<const std::int32_t>, kButtonGroups> fButtonIndexList;
  std::array<std::int32_t, kButtonGroups> fButtonMenuCount{};
  QDialog* fModalWindow = nullptr;
  bool fReadsControls = false;
  std::optional<veltrix::DriverStatus> fDriverStatus;  // nothing until the helper tells
};

extern VeltrixController* gVeltrixController;  // null before awakeFromNib
