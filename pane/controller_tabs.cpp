#include <QTabWidget>
#include <algorithm>
#include <cstddef>

#include "helperlink/device_buttons.h"
#include "pane/controller.h"
#include "pane/outlets.h"

void VeltrixController::vtxSaveTabs() {
  const QTabWidget* const tabs = fOutlets->main.outMainTabsRoot;
  for (int i = 0; i < veltrix::kRootTabCount; ++i) {
    fRootTabItems.at(static_cast<std::size_t>(i)) = {tabs->widget(i), tabs->tabText(i)};
    fRootTabVisible.at(static_cast<std::size_t>(i)) = true;
  }
}

// A tab comes back to its place: behind as many as are shown of those before it.
bool VeltrixController::vtxShowHideTab(std::int16_t index, bool visible) {
  const auto which = static_cast<std::uint16_t>(index);
  if (which >= veltrix::kRootTabCount || fRootTabVisible.at(which) == visible) {
    return false;
  }
  QTabWidget* const tabs = fOutlets->main.outMainTabsRoot;
  const RootTabItem& item = fRootTabItems.at(which);
  fRootTabVisible.at(which) = visible;
  if (visible) {
    const auto before = std::count(fRootTabVisible.begin(), fRootTabVisible.begin() + which, true);
    tabs->insertTab(static_cast<int>(before), item.page, item.title);
  } else {
    // The page stays a child of the tab view, without a tab.
    tabs->removeTab(tabs->indexOf(item.page));
    item.page->hide();
  }
  return true;
}

void VeltrixController::tabView(QTabWidget* /*tabView*/, int /*didSelectTabViewItem*/) {
  vtxUpdateRestoreButton();
}

std::int32_t VeltrixController::vtxCurAssignmentTabIndex(std::int32_t button) const {
  return veltrix::buttonPosition(fCurDeviceTab, button);
}
