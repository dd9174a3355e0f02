#pragma once

#include <cstdint>

// Which pages and tabs the window shows. A device tab is 1 without a trackball (or without settings that fit
// it), 2 to 7 for the models; anything else is treated as 1 unless stated.
namespace veltrix {

inline constexpr int kRootTabCount = 4;
inline constexpr int kButtonsRootTab = 0;
inline constexpr int kPointerRootTab = 1;
inline constexpr int kScrollingRootTab = 2;
inline constexpr int kHelpRootTab = 3;
inline constexpr int kScrollingTabIdentifier = 3;  // the identifier of the root tab with index 2

bool pointerTabVisible(std::int32_t deviceTab);    // for every device tab but 1
bool scrollingTabVisible(std::int32_t deviceTab);  // besides, not for 5, a model without wheel and ring

// Whether the user has to be moved off the selected root tab, because it is about to go.
bool leavesSelectedTab(std::int32_t deviceTab, int selectedIdentifier);

int scrollDirectionPage(std::int32_t deviceTab);

// The page of the restore area: 0 nothing, 1 the button, 2 the page that goes with the last root tab. The
// index of the selected tab is -1 for none.
int restoreAreaPage(std::int32_t deviceTab, int selectedTabIndex, int tabCount);

// The page of the device strip: 1 with more than one kind present, else 0.
int deviceIconsPage(int presentKinds);

}  // namespace veltrix
