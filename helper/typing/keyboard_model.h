#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "helper/commands/attempt.h"
#include "platform/keymap_sources.h"
#include "util/result.h"

namespace veltrix {

// A key with what is held around it: evdev codes, the modifier keys in the order in which they go down.
struct KeyPress {
  std::array<std::uint16_t, 6> modifiers{};  // up to the first 0
  std::uint16_t code = 0;

  friend bool operator==(const KeyPress& a, const KeyPress& b) = default;
};

// Which keys produce what under one group of a keymap. Not thread-safe.
class KeyboardModel {
 public:
  // An error when the keymap is empty. `locale` names the table of dead-key sequences.
  static Result<KeyboardModel> of(xkb::Context context, xkb::FoundKeymap keymap, const char* locale);

  KeyboardModel(KeyboardModel&&) noexcept;
  KeyboardModel& operator=(KeyboardModel&&) noexcept;
  ~KeyboardModel();

  // The press for a shortcut: the key that produces the keysym now, or, where no key of this group does (a
  // Latin letter on a Cyrillic layout), the key that programs take for it. Nothing when there is none.
  std::optional<KeyPress> keysFor(const KeyStroke& stroke) const;

  // The presses that type one character, more than one with dead keys. Empty when the layout cannot.
  std::vector<KeyPress> keysForCharacter(char32_t character) const;

 private:
  struct Tables;
  explicit KeyboardModel(std::unique_ptr<Tables> tables);
  std::unique_ptr<Tables> fTables;
};

// The presses for a text, one list after the other.
struct TypingPlan {
  std::vector<KeyPress> presses;
  std::vector<char32_t> missing;  // characters that cannot be typed, each once, in the order of the text
  bool isComposed = false;        // by dead keys or numbers, which programs take longer for than for a key
};

// How a desktop takes a character that the layout does not have.
enum class UnicodeInput : std::uint8_t {
  kNone,
  kControlShiftU,  // Control and Shift held with u, the number in hexadecimal digits, then Space
};

// UTF-8; bytes that are none are missing as U+FFFD. New lines are Return, tabs are Tab.
TypingPlan planTyping(const KeyboardModel& keyboard, std::string_view text, UnicodeInput unicode);

}  // namespace veltrix
