#include "actions/template_menu.h"

namespace veltrix {

namespace {

constexpr TemplateItem kSeparator{0, nullptr};

// Titles are those of the catalogue, resources/Assignments.plist.
constexpr TemplateItem kItems[] = {
    {1, "Click"},
    {2, "Right Click"},
    {3, "Middle Click"},
    {6, "Double Click"},
    {7, "Drag Lock"},
    {4, "Button 4 (Back)"},
    {5, "Button 5 (Forward)"},
    kSeparator,
    {24, "Scroll with the Ball While Held"},
    {25, "Slow Pointer While Held"},
    {26, "Single Axis While Held"},
    kSeparator,
    {32, "Undo"},
    {34, "Cut"},
    {35, "Copy"},
    {36, "Paste"},
    kSeparator,
    {74, "Close Window"},
    {75, "Minimize Window"},
    {78, "Next Window"},
    {102, "Show Desktop"},
    kSeparator,
    {140, "Play or Pause"},
    {146, "Volume Up"},
    {147, "Volume Down"},
    {148, "Mute"},
    kSeparator,
    {0, "No Action"},
    kSeparator,
    {kEditItemTag, "Edit Assignment…"},
};

}  // namespace

std::span<const TemplateItem> templateMenu() {
  return kItems;
}

}  // namespace veltrix
