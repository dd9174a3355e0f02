#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

#include "helper/typing/keyboard_model.h"
#include "platform/text_encoding.h"

namespace veltrix {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr xkb_keysym_t kOpener = XKB_KEY_u;

bool isControl(char32_t character) {
  constexpr char32_t kDelete = 0x7F;
  constexpr char32_t kFirstAfterControls = 0xA0;
  return character < U' ' || (character >= kDelete && character < kFirstAfterControls);
}

// Builds a plan from the beginning of the text to its end.
class Planner {
 public:
  Planner(const KeyboardModel& keyboard, UnicodeInput unicode)
      : fKeyboard(keyboard), fUnicode(unicode), fLiftKey(keyboard.keyThatLiftsLock()) {}

  TypingPlan plan(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size()) {
      const auto character = nextUtf8(text, at);
      if (!character) {
        ++at;
        miss(kReplacement);
      } else if (*character != U'\r' || at >= text.size() || text[at] != '\n') {  // else one new line in two
        add(*character);
      }
    }
    lift(false);
    return std::move(fPlan);
  }

 private:
  void add(char32_t character) {
    if (const auto keys = fKeyboard.keysForCharacter(character); !keys.empty()) {
      lift(false);
      append(keys);
    } else if (const auto others = fKeyboard.keysWithLockLifted(character); !others.empty()) {
      lift(true);
      append(others);
    } else if (fUnicode == UnicodeInput::kNone || isControl(character) || !addNumber(character)) {
      miss(character);
    }
  }

  // Some characters cannot be typed while letters are locked: with Caps Lock the key of "ß" gives "ẞ" on a
  // German keyboard, and with Shift "?". The lock is off for those alone, so that a text that is stopped
  // leaves it as it was wherever it can.
  void lift(bool wanted) {
    if (!fLiftKey || wanted == fIsLifted) {
      return;
    }
    fIsLifted = wanted;
    fPlan.presses.push_back(*fLiftKey);
    fPlan.isComposed = true;
  }

  void append(const std::vector<KeyPress>& presses) {
    fPlan.isComposed = fPlan.isComposed || presses.size() > 1;
    fPlan.presses.insert(fPlan.presses.end(), presses.begin(), presses.end());
  }

  void miss(char32_t character) {
    if (std::find(fPlan.missing.begin(), fPlan.missing.end(), character) == fPlan.missing.end()) {
      fPlan.missing.push_back(character);
    }
  }

  // The character by its number, for which programs want the letters as they are. False, with nothing added,
  // when this layout has no keys for that.
  bool addNumber(char32_t character) {
    std::array<char, 8> digits{};
    const auto* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), std::uint32_t{character}, 16).ptr;
    const auto opening = fKeyboard.keysFor({kHoldControl | kHoldShift, kOpener});
    if (!opening) {
      return false;
    }
    std::vector<KeyPress> presses{*opening};
    for (const char* digit = digits.data(); digit <= end; ++digit) {
      const auto keys = fKeyboard.keysWithLockLifted(
          digit == end ? U' ' : static_cast<char32_t>(static_cast<unsigned char>(*digit)));
      if (keys.size() != 1) {  // a dead key would end the number
        return false;
      }
      presses.push_back(keys.front());
    }
    lift(true);
    append(presses);
    return true;
  }

  const KeyboardModel& fKeyboard;
  UnicodeInput fUnicode;
  std::optional<KeyPress> fLiftKey;
  bool fIsLifted = false;
  TypingPlan fPlan;
};

}  // namespace

TypingPlan planTyping(const KeyboardModel& keyboard, std::string_view text, UnicodeInput unicode) {
  return Planner(keyboard, unicode).plan(text);
}

}  // namespace veltrix
