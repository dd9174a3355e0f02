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

// Which keys produce what under one group of a keymap, with the locks of the moment. Not thread-safe.
class KeyboardModel {
 public:
  // An error when the keymap is empty. `locale` names the table of dead-key sequences.
  static Result<KeyboardModel> of(xkb::Context context, xkb::FoundKeymap keymap, const char* locale);

  KeyboardModel(KeyboardModel&&) noexcept;
  KeyboardModel& operator=(KeyboardModel&&) noexcept;
  ~KeyboardModel();

  // The lamps of the keyboard from now on, k...Lamp bits of driverlink/packets.h; at first all are out.
  void setLamps(std::uint16_t lit);

  // The press for a shortcut: the key that produces the keysym now, or, where no key of this group does (a
  // Latin letter on a Cyrillic layout), the key that programs take for it. Letters are meant without locks,
  // as programs take them. Nothing when there is none.
  std::optional<KeyPress> keysFor(const KeyStroke& stroke) const;

  // The presses that type one character, more than one with dead keys. Empty when the layout cannot.
  std::vector<KeyPress> keysForCharacter(char32_t character) const;

  // The key that turns the lock of letters off, and on again when it is pressed once more. Nothing when that
  // is off or no key does so.
  std::optional<KeyPress> keyThatLiftsLock() const;
  // As keysForCharacter(), for when that lock is off; empty too when it is on and no key lifts it.
  std::vector<KeyPress> keysWithLockLifted(char32_t character) const;

 private:
  struct Tables;
  explicit KeyboardModel(std::unique_ptr<Tables> tables);
  std::unique_ptr<Tables> fTables;
};

// The presses for a text, one list after the other.
struct TypingPlan {
  std::vector<KeyPress> presses;
  std::vector<char32_t> missing;  // characters that cannot be typed, each once, in the order of the text
  bool isComposed = false;  // by dead keys, locks or numbers, which programs take longer for than for a key
};

// How a desktop takes a character that the layout does not have.
enum class UnicodeInput : std::uint8_t {
  kNone,
  kControlShiftU,  // Control and Shift held with u, the number in hexadecimal digits, then Space
};

// UTF-8; bytes that are none are missing as U+FFFD. New lines are Return, tabs are Tab.
TypingPlan planTyping(const KeyboardModel& keyboard, std::string_view text, UnicodeInput unicode);

}  // namespace veltrix
