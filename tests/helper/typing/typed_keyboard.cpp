#include "tests/helper/typing/typed_keyboard.h"

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>

#include "driverlink/packets.h"
#include "platform/text_encoding.h"

namespace veltrix::testing {
namespace {

LayoutNames namesOf(const char* name) {
  const auto names = parseLayoutName(name);
  EXPECT_TRUE(names.has_value()) << name;
  return names.value_or(LayoutNames{});
}

xkb::ComposeState stateOf(xkb_compose_table* table) {
  return xkb::ComposeState(xkb_compose_state_new(table, XKB_COMPOSE_STATE_NO_FLAGS));
}

bool isDead(xkb_keysym_t keysym) {
  return keysym >= XKB_KEY_dead_grave && keysym <= XKB_KEY_dead_greek;
}

std::string composedText(xkb_compose_state* state) {
  std::array<char, 64> text{};
  xkb_compose_state_get_utf8(state, text.data(), text.size());
  return text.data();
}

}  // namespace

TypedKeyboard::TypedKeyboard()
    : fTable(xkb_compose_table_new_from_locale(fContext.get(), kEnglish, XKB_COMPOSE_COMPILE_NO_FLAGS)) {}

TypedKeyboard::TypedKeyboard(const LayoutNames& names, xkb_layout_index_t group) : TypedKeyboard() {
  fGroup = group;
  fKeymap = xkb::keymapOfNames(fContext.get(), names).keymap;
  EXPECT_NE(fKeymap, nullptr) << names.layout;
}

TypedKeyboard::TypedKeyboard(const char* name) : TypedKeyboard(namesOf(name)) {}

TypedKeyboard TypedKeyboard::ofText(const char* text) {
  TypedKeyboard keyboard;
  keyboard.fKeymap.reset(xkb_keymap_new_from_string(keyboard.fContext.get(), text, XKB_KEYMAP_FORMAT_TEXT_V1,
                                                    XKB_KEYMAP_COMPILE_NO_FLAGS));
  EXPECT_NE(keyboard.fKeymap, nullptr);
  return keyboard;
}

KeyboardModel TypedKeyboard::model() const {
  auto model = KeyboardModel::of(xkb::Context(xkb_context_ref(fContext.get())),
                                 {xkb::Keymap(xkb_keymap_ref(fKeymap.get())), fGroup}, kEnglish);
  EXPECT_TRUE(model.ok());
  return std::move(model.value());
}

std::set<xkb_keysym_t> TypedKeyboard::keysyms() const {
  std::set<xkb_keysym_t> found;
  for (xkb_keycode_t key = xkb::keycodeOf(KEY_1); key <= xkb::keycodeOf(KEY_102ND); ++key) {
    const auto code = key - xkb::keycodeOf(0);
    if (code == KEY_BACKSPACE || (code > KEY_SPACE && code < KEY_102ND) || code == KEY_KPASTERISK) {
      continue;
    }
    const auto groups = xkb_keymap_num_layouts_for_key(fKeymap.get(), key);
    const auto group = groups > 0 ? fGroup % groups : 0;
    for (xkb_level_index_t level = 0; level < xkb_keymap_num_levels_for_key(fKeymap.get(), key, group);
         ++level) {
      const xkb_keysym_t* keysyms = nullptr;
      if (xkb_keymap_key_get_syms_by_level(fKeymap.get(), key, group, level, &keysyms) == 1) {
        found.insert(keysyms[0]);
      }
    }
  }
  return found;
}

std::vector<char32_t> TypedKeyboard::characters() const {
  const auto state = stateOf(fTable.get());
  std::set<char32_t> found;
  const auto all = keysyms();
  for (const auto keysym : all) {
    const char32_t character = xkb_keysym_to_utf32(keysym);
    if (character >= U' ' && (character < 0x7F || character >= 0xA0)) {
      found.insert(character);
    }
    for (auto base = all.begin(); isDead(keysym) && base != all.end(); ++base) {
      xkb_compose_state_reset(state.get());
      xkb_compose_state_feed(state.get(), keysym);
      xkb_compose_state_feed(state.get(), *base);
      if (xkb_compose_state_get_status(state.get()) == XKB_COMPOSE_COMPOSED) {
        std::size_t at = 0;
        const auto text = composedText(state.get());
        const auto composed = nextUtf8(text, at);
        if (composed && at == text.size()) {
          found.insert(*composed);
        }
      }
    }
  }
  return {found.begin(), found.end()};
}

KeyReader::KeyReader(const TypedKeyboard& keyboard)
    : fGroup(keyboard.group()),
      fState(xkb_state_new(keyboard.keymap())),
      fCompose(stateOf(keyboard.composeTable())) {
  xkb_state_update_mask(fState.get(), 0, 0, 0, 0, 0, fGroup);
}

void KeyReader::lock(std::uint16_t code) {
  move(code, true);
  move(code, false);
  fLocked = xkb_state_serialize_mods(fState.get(), XKB_STATE_MODS_EFFECTIVE);
}

std::uint16_t KeyReader::lamps() const {
  const bool caps = xkb_state_led_name_is_active(fState.get(), XKB_LED_NAME_CAPS) > 0;
  const bool num = xkb_state_led_name_is_active(fState.get(), XKB_LED_NAME_NUM) > 0;
  return static_cast<std::uint16_t>((caps ? kCapsLockLamp : 0) | (num ? kNumLockLamp : 0));
}

std::string KeyReader::read(const KeyPress& press) {
  const auto end = std::find(press.modifiers.begin(), press.modifiers.end(), 0);
  std::for_each(press.modifiers.begin(), end, [this](std::uint16_t code) { move(code, true); });
  fHeld.clear();
  for (const char* name : {XKB_MOD_NAME_SHIFT, XKB_MOD_NAME_CTRL, XKB_MOD_NAME_ALT, XKB_MOD_NAME_LOGO}) {
    if (xkb_state_mod_name_is_active(fState.get(), name, XKB_STATE_MODS_EFFECTIVE) == 1) {
      fHeld.insert(name);
    }
  }
  move(press.code, true);
  const auto text = textOf(fKeysym);
  move(press.code, false);
  std::for_each(std::make_reverse_iterator(end), press.modifiers.rend(),
                [this](std::uint16_t code) { move(code, false); });
  return text;
}

std::string KeyReader::read(const std::vector<KeyPress>& presses) {
  std::string text;
  for (const auto& press : presses) {
    text += read(press);
  }
  return text;
}

bool KeyReader::isAtRest() const {
  return fDown.empty() && xkb_state_serialize_mods(fState.get(), XKB_STATE_MODS_EFFECTIVE) == fLocked &&
         xkb_state_serialize_layout(fState.get(), XKB_STATE_LAYOUT_EFFECTIVE) == fGroup &&
         xkb_compose_state_get_status(fCompose.get()) != XKB_COMPOSE_COMPOSING;
}

void KeyReader::move(std::uint16_t code, bool down) {
  if (down) {
    EXPECT_EQ(fDown.count(code), 0U) << code << " is down";
    fDown.insert(code);
    fKeysym = xkb_state_key_get_one_sym(fState.get(), xkb::keycodeOf(code));
  } else {
    EXPECT_EQ(fDown.erase(code), 1U) << code << " is not down";
  }
  xkb_state_update_key(fState.get(), xkb::keycodeOf(code), down ? XKB_KEY_DOWN : XKB_KEY_UP);
}

std::string KeyReader::textOf(xkb_keysym_t keysym) {
  if (keysym == XKB_KEY_Return || keysym == XKB_KEY_Tab) {
    return keysym == XKB_KEY_Return ? "\n" : "\t";
  }
  if (xkb_compose_state_feed(fCompose.get(), keysym) == XKB_COMPOSE_FEED_IGNORED) {
    return "";  // a modifier key
  }
  switch (xkb_compose_state_get_status(fCompose.get())) {
    case XKB_COMPOSE_COMPOSED:
      return composedText(fCompose.get());
    case XKB_COMPOSE_CANCELLED:
      return "<cancelled>";
    case XKB_COMPOSE_COMPOSING:
      return "";
    case XKB_COMPOSE_NOTHING:
      break;
  }
  const char32_t character = xkb_keysym_to_utf32(keysym);
  return character != 0 ? utf8({character}) : "<nothing>";
}

std::string utf8(const std::u32string& text) {
  std::string bytes;
  for (const auto character : text) {
    appendUtf8(bytes, character);
  }
  return bytes;
}

std::string nameOfLayout(const ::testing::TestParamInfo<const char*>& info) {
  std::string name = info.param;
  std::replace(name.begin(), name.end(), ':', '_');
  return name;
}

}  // namespace veltrix::testing
