#include "platform/keyboard_layout.h"

#include <cstdlib>
#include <utility>

#include "platform/key_characters.h"
#include "platform/keymap_sources.h"
#include "platform/layout_keys.h"

namespace veltrix {
namespace {

constexpr std::uint8_t kShortcutModifiers = 0x01 | 0x10;  // Command and Control

xkb::FoundKeymap findKeymap(xkb_context* context, const KeyboardSources& sources) {
  xkb::FoundKeymap found;
  if (!sources.xDisplay.empty()) {
    found = xkb::keymapOfXServer(context, sources.xDisplay);
  }
  if (!found.keymap && !sources.waylandDisplay.empty()) {
    found = xkb::keymapOfWaylandSeat(context, sources.waylandDisplay);
  }
  return found.keymap ? std::move(found)
                      : xkb::keymapOfSystem(context, sources.environment, sources.defaultsFile);
}

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace

KeyboardSources KeyboardSources::ofSystem() {
  return {variable("DISPLAY"), variable("WAYLAND_DISPLAY"), layoutNamesOfEnvironment(),
          "/etc/default/keyboard"};
}

KeyboardLayout::KeyboardLayout(std::unique_ptr<xkb::LayoutKeys> keys) : fKeys(std::move(keys)) {}
KeyboardLayout::KeyboardLayout(KeyboardLayout&&) noexcept = default;
KeyboardLayout& KeyboardLayout::operator=(KeyboardLayout&&) noexcept = default;
KeyboardLayout::~KeyboardLayout() = default;

Result<KeyboardLayout> KeyboardLayout::current(const KeyboardSources& sources) {
  auto context = xkb::makeContext();
  auto found = context ? findKeymap(context.get(), sources) : xkb::FoundKeymap();
  if (!found.keymap) {
    return Error{0, "the system's keyboard data holds no layout", {}};
  }
  return KeyboardLayout(std::make_unique<xkb::LayoutKeys>(std::move(context), std::move(found)));
}

Result<KeyboardLayout> KeyboardLayout::named(std::string_view name) {
  const Error unknown{0, "there is no keyboard layout \"" + std::string(name) + "\"", {}};
  const auto names = parseLayoutName(name);
  auto context = xkb::makeContext();
  if (!names || !context) {
    return unknown;
  }
  auto found = xkb::keymapOfNames(context.get(), *names);
  if (!found.keymap && names->variant.empty()) {
    found = xkb::keymapOfNames(
        context.get(),
        {.model = "", .layout = xkb::kAmericanLayout, .variant = names->layout, .options = ""});
  }
  if (!found.keymap) {
    return unknown;
  }
  return KeyboardLayout(std::make_unique<xkb::LayoutKeys>(std::move(context), std::move(found)));
}

std::optional<char16_t> KeyboardLayout::translate(std::uint16_t evdevCode, std::uint8_t modifiers,
                                                  std::uint32_t& deadKeyState) const {
  if (!fKeys->hasKey(evdevCode)) {
    return std::nullopt;
  }
  if (xkb::isOnKeypad(evdevCode)) {
    return fKeys->typeOnKeypad(evdevCode);
  }
  if ((modifiers & kShortcutModifiers) != 0) {
    return fKeys->typeShortcut(evdevCode, modifiers);
  }
  return fKeys->type(evdevCode, modifiers, deadKeyState);
}

}  // namespace veltrix
