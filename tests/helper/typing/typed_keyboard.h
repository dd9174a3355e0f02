#pragma once

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "helper/typing/keyboard_model.h"

namespace veltrix::testing {

inline constexpr const char* kEnglish = "en_US.UTF-8";

// A keymap, for a model and for whoever checks it.
class TypedKeyboard {
 public:
  explicit TypedKeyboard(const LayoutNames& names, xkb_layout_index_t group = 0);
  // Of a layout and a variant such as "us:dvorak".
  explicit TypedKeyboard(const char* name);
  // Of the text of a keymap.
  static TypedKeyboard ofText(const char* text);

  KeyboardModel model() const;
  xkb_compose_table* composeTable() const { return fTable.get(); }  // the English one
  xkb_keymap* keymap() const { return fKeymap.get(); }
  xkb_layout_index_t group() const { return fGroup; }

  // The characters that keys among the letters have on any level, and what one dead key before them makes.
  std::vector<char32_t> characters() const;

 private:
  TypedKeyboard();
  std::set<xkb_keysym_t> keysyms() const;

  xkb::Context fContext = xkb::makeContext();
  xkb::ComposeTable fTable;
  xkb::Keymap fKeymap;
  xkb_layout_index_t fGroup = 0;
};

// Reads pressed keys as a program does that knows nothing of how they were chosen. The keyboard must outlive
// it.
class KeyReader {
 public:
  explicit KeyReader(const TypedKeyboard& keyboard);

  // Presses and releases a key that locks something; from now on that is what is at rest.
  void lock(std::uint16_t code);
  // The lamps that the keyboard shows, k...Lamp bits.
  std::uint16_t lamps() const;

  // Presses modifiers and key, releases them in the opposite order. "\n" for Return, "\t" for Tab; what a
  // sequence of dead keys gives comes with its last key.
  std::string read(const KeyPress& press);
  std::string read(const std::vector<KeyPress>& presses);

  // Of the last key.
  xkb_keysym_t keysym() const { return fKeysym; }
  bool hadHeld(const char* modifier) const { return fHeld.count(modifier) > 0; }

  // Whether all keys are up, no modifier is held, locks and group are as before and no sequence is open.
  bool isAtRest() const;

 private:
  void move(std::uint16_t code, bool down);
  std::string textOf(xkb_keysym_t keysym);

  xkb_layout_index_t fGroup;
  xkb_mod_mask_t fLocked = 0;
  xkb::State fState;
  xkb::ComposeState fCompose;
  std::multiset<std::uint16_t> fDown;
  std::set<std::string> fHeld;
  xkb_keysym_t fKeysym = XKB_KEY_NoSymbol;
};

std::string utf8(const std::u32string& text);

// Of a test with the name of a layout as its parameter.
std::string nameOfLayout(const ::testing::TestParamInfo<const char*>& info);

}  // namespace veltrix::testing
