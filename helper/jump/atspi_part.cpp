#include "helper/jump/atspi_part.h"

#include <algorithm>

namespace veltrix {

namespace {

AtspiRole roleOf(AtspiAccessible* accessible) {
  GError* error = nullptr;
  const AtspiRole role = atspi_accessible_get_role(accessible, &error);
  const bool failed = error != nullptr;
  g_clear_error(&error);
  return failed ? ATSPI_ROLE_INVALID : role;
}

bool isOneOf(AtspiRole role, std::initializer_list<AtspiRole> roles) {
  return std::find(roles.begin(), roles.end(), role) != roles.end();
}

bool hasStates(AtspiAccessible* accessible, std::initializer_list<AtspiStateType> states) {
  const std::unique_ptr<AtspiStateSet, GObjectReleaser> set(atspi_accessible_get_state_set(accessible));
  return set != nullptr && std::all_of(states.begin(), states.end(), [&](AtspiStateType state) {
           return atspi_state_set_contains(set.get(), state) != 0;
         });
}

int childCount(AtspiAccessible* accessible) {
  GError* error = nullptr;
  const int count = atspi_accessible_get_child_count(accessible, &error);
  const bool failed = error != nullptr;
  g_clear_error(&error);
  return failed ? 0 : count;
}

AccessibleHandle childAt(AtspiAccessible* accessible, int index) {
  GError* error = nullptr;
  AccessibleHandle child(atspi_accessible_get_child_at_index(accessible, index, &error));
  g_clear_error(&error);
  return child;
}

}  // namespace

bool isDialog(AtspiAccessible* window) {
  return isOneOf(roleOf(window), {ATSPI_ROLE_DIALOG, ATSPI_ROLE_ALERT, ATSPI_ROLE_FILE_CHOOSER,
                                  ATSPI_ROLE_COLOR_CHOOSER, ATSPI_ROLE_FONT_CHOOSER});
}

AccessibleHandle findActiveDialog(std::uint32_t processId) {
  const AccessibleHandle desktop(atspi_get_desktop(0));
  const int programs = childCount(desktop.get());
  for (int i = 0; i < programs; ++i) {
    const AccessibleHandle program = childAt(desktop.get(), i);
    // The bus knows this; a program that hangs is not asked.
    if (program == nullptr || atspi_accessible_get_process_id(program.get(), nullptr) != processId)
      continue;
    const int windows = childCount(program.get());
    for (int j = 0; j < windows; ++j) {
      AccessibleHandle window = childAt(program.get(), j);
      if (window != nullptr && isDialog(window.get()) && hasStates(window.get(), {ATSPI_STATE_ACTIVE}))
        return window;
    }
  }
  return nullptr;
}

std::string accessibleId(AtspiAccessible* accessible) {
  const AtspiObject& object = accessible->parent;
  const char* program = object.app != nullptr ? object.app->bus_name : nullptr;
  return std::string(program != nullptr ? program : "") + (object.path != nullptr ? object.path : "");
}

AccessiblePart::Kind AtspiPart::kind() {
  const AtspiRole role = roleOf(fAccessible.get());
  if (isOneOf(role, {ATSPI_ROLE_PUSH_BUTTON, ATSPI_ROLE_PUSH_BUTTON_MENU}))
    return Kind::kButton;
  const bool holdsNone = isOneOf(
      role, {ATSPI_ROLE_INVALID,   ATSPI_ROLE_TABLE,        ATSPI_ROLE_TREE_TABLE,    ATSPI_ROLE_TREE,
             ATSPI_ROLE_LIST,      ATSPI_ROLE_LIST_BOX,     ATSPI_ROLE_TEXT,          ATSPI_ROLE_ENTRY,
             ATSPI_ROLE_LABEL,     ATSPI_ROLE_IMAGE,        ATSPI_ROLE_ICON,          ATSPI_ROLE_CHECK_BOX,
             ATSPI_ROLE_COMBO_BOX, ATSPI_ROLE_RADIO_BUTTON, ATSPI_ROLE_TOGGLE_BUTTON, ATSPI_ROLE_MENU_BAR,
             ATSPI_ROLE_MENU,      ATSPI_ROLE_SCROLL_BAR,   ATSPI_ROLE_SLIDER,        ATSPI_ROLE_SPIN_BUTTON,
             ATSPI_ROLE_SEPARATOR, ATSPI_ROLE_PROGRESS_BAR, ATSPI_ROLE_DOCUMENT_WEB,  ATSPI_ROLE_TERMINAL});
  return holdsNone ? Kind::kOther : Kind::kGroup;
}

bool AtspiPart::isUsableDefault() {
  return hasStates(fAccessible.get(), {ATSPI_STATE_IS_DEFAULT, ATSPI_STATE_SHOWING, ATSPI_STATE_SENSITIVE});
}

int AtspiPart::partCount() {
  return childCount(fAccessible.get());
}

std::unique_ptr<AccessiblePart> AtspiPart::part(int index) {
  AccessibleHandle child = childAt(fAccessible.get(), index);
  return child != nullptr ? std::make_unique<AtspiPart>(std::move(child)) : nullptr;
}

std::optional<ScreenArea> AtspiPart::place() {
  const std::unique_ptr<AtspiComponent, GObjectReleaser> component(
      atspi_accessible_get_component_iface(fAccessible.get()));
  if (component == nullptr)
    return std::nullopt;
  GError* error = nullptr;
  AtspiRect* const rectangle = atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, &error);
  const bool failed = error != nullptr || rectangle == nullptr;
  std::optional<ScreenArea> area;
  if (!failed)
    area = ScreenArea{rectangle->x, rectangle->y, rectangle->width, rectangle->height};
  g_clear_error(&error);
  g_free(rectangle);
  return area;
}

}  // namespace veltrix
