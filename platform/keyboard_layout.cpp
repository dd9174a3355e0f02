#include "platform/keyboard_layout.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <utility>

#include "platform/key_characters.h"
#include "platform/keymap_sources.h"
#include "platform/layout_keys.h"

namespace veltrix {
namespace {

constexpr std::uint8_t kShortcutModifiers = 0x01 | 0x10;  // Command and Control

// Keyboard data that is not in order shows in what is not found; there is nobody to tell on the way. The
// library's own way of reading variables is turned off, so that a layout by name is the same everywhere.
xkb::Context makeContext() {
  xkb::Context context(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
  if (context) {
    xkb_context_set_log_fn(context.get(), [](xkb_context*, xkb_log_level, const char*, va_list) {});
  }
  return context;
}

std::optional<LayoutNames> namesInFile(const std::string& path) {
  constexpr std::streamsize kMostBytes = 65536;
  std::ifstream file(path, std::ios::binary);
  std::string text(kMostBytes, '\0');
  file.read(text.data(), kMostBytes);
  text.resize(static_cast<std::size_t>(file.gcount()));
  return readLayoutNames(text);
}

LayoutNames onlyLayout(std::string layout) {
  return {.model = "", .layout = std::move(layout), .variant = "", .options = ""};
}

xkb::FoundKeymap findKeymap(xkb_context* context, const KeyboardSources& sources) {
  xkb::FoundKeymap found;
  if (!sources.xDisplay.empty()) {
    found = xkb::keymapOfXServer(context, sources.xDisplay);
  }
  if (!found.keymap && !sources.waylandDisplay.empty()) {
    found = xkb::keymapOfWaylandSeat(context, sources.waylandDisplay);
  }
  if (!found.keymap && sources.environment) {
    found = xkb::keymapOfNames(context, *sources.environment);
  }
  if (!found.keymap && !sources.defaultsFile.empty()) {
    if (const auto names = namesInFile(sources.defaultsFile)) {
      found = xkb::keymapOfNames(context, *names);
    }
  }
  if (!found.keymap) {
    found = xkb::keymapOfNames(context, onlyLayout(xkb::kAmericanLayout));
  }
  return found;
}

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace

namespace xkb {

FoundKeymap keymapOfNames(xkb_context* context, const LayoutNames& names) {
  const xkb_rule_names rules{nullptr, names.model.c_str(), names.layout.c_str(), names.variant.c_str(),
                             names.options.c_str()};
  return {Keymap(xkb_keymap_new_from_names(context, &rules, XKB_KEYMAP_COMPILE_NO_FLAGS)), 0};
}

}  // namespace xkb

KeyboardSources KeyboardSources::ofSystem() {
  return {variable("DISPLAY"), variable("WAYLAND_DISPLAY"), layoutNamesOfEnvironment(),
          "/etc/default/keyboard"};
}

KeyboardLayout::KeyboardLayout(std::unique_ptr<xkb::LayoutKeys> keys) : fKeys(std::move(keys)) {}
KeyboardLayout::KeyboardLayout(KeyboardLayout&&) noexcept = default;
KeyboardLayout& KeyboardLayout::operator=(KeyboardLayout&&) noexcept = default;
KeyboardLayout::~KeyboardLayout() = default;

Result<KeyboardLayout> KeyboardLayout::current(const KeyboardSources& sources) {
  auto context = makeContext();
  auto found = context ? findKeymap(context.get(), sources) : xkb::FoundKeymap();
  if (!found.keymap) {
    return Error{0, "the system's keyboard data holds no layout", {}};
  }
  return KeyboardLayout(std::make_unique<xkb::LayoutKeys>(std::move(context), std::move(found)));
}

Result<KeyboardLayout> KeyboardLayout::named(std::string_view name) {
  const Error unknown{0, "there is no keyboard layout \"" + std::string(name) + "\"", {}};
  const auto names = parseLayoutName(name);
  auto context = makeContext();
  if (!names || !context) {
    return unknown;
  }
  auto found = xkb::keymapOfNames(context.get(), *names);
  if (!found.keymap && names->variant.empty()) {
    LayoutNames american = onlyLayout(xkb::kAmericanLayout);
    american.variant = names->layout;
    found = xkb::keymapOfNames(context.get(), american);
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
