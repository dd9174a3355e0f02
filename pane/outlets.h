#pragma once

#include <cstdint>

#include "ui_accessibility_warning.h"
#include "ui_buttons_tab.h"
#include "ui_driver_sheet.h"
#include "ui_help_tab.h"
#include "ui_main_view.h"
#include "ui_pointer_tab.h"
#include "ui_scrolling_tab.h"

namespace veltrix {

// The widgets of the pane under the names that they have in the interface files. They belong to the widget
// that they were made in.
struct Outlets {
  Ui::VeltrixMainView main;
  Ui::VeltrixButtonsTab buttons;
  Ui::VeltrixPointerTab pointer;
  Ui::VeltrixScrollingTab scrolling;
  Ui::VeltrixHelpTab help;
  Ui::VeltrixAccessibilityWarning warning;
  QDialog* outWindowAccessibilityWarning = nullptr;
  Ui::VeltrixDriverSheet driver;
  QDialog* outWindowDriver = nullptr;
};

// Makes all widgets of the pane as children of `view`, in the state that they have before any settings are
// shown.
void makeInterface(QWidget* view, Outlets* outlets);

// Selects the page of outBtnTabsDevices for a device tab (1 to 7). The picture of a model is read only now,
// because a callout cannot be placed without it.
void showButtonPage(const Outlets& outlets, std::int32_t deviceTab);

}  // namespace veltrix
