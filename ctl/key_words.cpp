#include "ctl/key_words.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "ctl/outcome.h"
#include "ctl/value_text.h"
#include "keyboard/key_names.h"
#include "platform/bundle.h"
#include "platform/letter_case.h"
#include "settings/command_classes.h"
#include "settings/modifier_mask.h"

namespace veltrix::ctl {
namespace {

constexpr std::uint16_t kLastKeyCode = 126;
constexpr std::uint16_t kFirstModifierKey = 54;
constexpr std::uint16_t kLastModifierKey = 63;
constexpr std::uint16_t kFirstKeypadKey = 65;
constexpr std::uint16_t kLastKeypadKey = 92;
constexpr std::string_view kKeypadPrefix = "num";

struct ModifierWord {
  const char* word;
  std::uint16_t mask;
};

constexpr ModifierWord kModifierWords[] = {
    {"control", kControlModifier}, {"ctrl", kControlModifier},      {"command", kCommandModifier},
    {"cmd", kCommandModifier},     {"super", kCommandModifier},     {"meta", kCommandModifier},
    {"win", kCommandModifier},     {"option", kOptionModifier},     {"alt", kOptionModifier},
    {"shift", kShiftModifier},     {"capslock", kCapsLockModifier},
};

// Names that keys have on other keyboards.
struct OtherName {
  const char* word;
  const char* name;
};

constexpr OtherName kOtherNames[] = {{"escape", "esc"},       {"pgup", "pageup"},    {"pgdn", "pagedown"},
                                     {"pgdown", "pagedown"},  {"insert", "help"},    {"ins", "help"},
                                     {"menu", "application"}, {"spacebar", "space"}, {"numlock", "clear"}};

// Names that mean one key here and another one there.
constexpr OtherName kAmbiguousNames[] = {
    {"delete", "write Backspace or Forward Delete"},
    {"del", "write Backspace or Forward Delete"},
    {"enter", "write Return or Num Enter"},
};

constexpr const char* kBackspace = "backspace";
constexpr std::uint16_t kBackspaceKey = 51;

// ASCII letters in lower case; blanks, hyphens and underscores of longer words left out.
std::string folded(std::string_view text) {
  std::string word;
  for (const char c : text) {
    const bool isFiller = c == ' ' || c == '-' || c == '_';
    if (!isFiller || text.size() == 1) {
      word += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
  }
  return word;
}

Error badKey(std::string_view text, const std::string& reason) {
  return {kBadInput, "\"" + std::string(text) + "\" " + reason, {}};
}

std::optional<std::uint16_t> modifierOf(std::string_view text) {
  const std::string word = folded(text);
  for (const auto& modifier : kModifierWords) {
    if (word == modifier.word) {
      return modifier.mask;
    }
  }
  return std::nullopt;
}

// The parts between plus signs, empty ones too. The last part may be a plus sign itself.
std::vector<std::string_view> partsOf(std::string_view text) {
  const bool endsInPlus = text == "+" || text.ends_with("++");
  std::string_view rest = endsInPlus ? text.substr(0, text.size() - 1) : text;
  std::vector<std::string_view> parts;
  for (auto plus = rest.find('+'); plus != std::string_view::npos; plus = rest.find('+')) {
    parts.push_back(rest.substr(0, plus));
    rest.remove_prefix(plus + 1);
  }
  parts.push_back(endsInPlus ? text.substr(text.size() - 1) : rest);
  return parts;
}

Result<std::uint16_t> maskOf(const std::vector<std::string_view>& words) {
  std::uint16_t mask = 0;
  for (const auto word : words) {
    const auto modifier = modifierOf(word);
    if (!modifier) {
      return badKey(word, "is no modifier key: Control, Command, Option, Shift or Caps Lock");
    }
    mask = static_cast<std::uint16_t>(mask | *modifier);
  }
  return mask;
}

bool isOneCharacter(std::string_view name) {
  constexpr unsigned kContinuationBits = 0xC0;
  constexpr unsigned kContinuation = 0x80;
  return std::count_if(name.begin(), name.end(), [](char c) {
           return (static_cast<unsigned char>(c) & kContinuationBits) != kContinuation;
         }) == 1;
}

bool isNamed(std::uint16_t keyCode, std::string_view wanted) {
  const std::string name = GetKeyNameWithCase(keyCode, true);
  if (!isOneCharacter(wanted)) {
    return folded(name) == wanted;
  }
  // A function key without a number is called "F", like the letter.
  constexpr std::uint8_t kFirstPrintable = 0x21;
  return GetKeyChar(keyCode) >= kFirstPrintable && equalIgnoringCase(name, wanted);
}

std::vector<std::uint16_t> keysNamed(std::string_view name, bool onKeypad) {
  std::vector<std::uint16_t> found;
  for (std::uint16_t code = 0; code <= kLastKeyCode; ++code) {
    const bool isModifier = code >= kFirstModifierKey && code <= kLastModifierKey;
    const bool isOnKeypad = code >= kFirstKeypadKey && code <= kLastKeypadKey;
    if (!isModifier && isOnKeypad == onKeypad && isNamed(code, name)) {
      found.push_back(code);
    }
  }
  return found;
}

Result<std::uint16_t> onlyOne(std::string_view text, const std::vector<std::uint16_t>& codes) {
  if (codes.empty()) {
    return badKey(text,
                  "is no key of the current keyboard layout; give the place of the key with --key CODE");
  }
  if (codes.size() == 1) {
    return codes.front();
  }
  std::string list;
  for (const std::uint16_t code : codes) {
    list += (list.empty() ? "" : ", ") + std::to_string(code);
  }
  return badKey(text, "is on more than one key: choose with --key from " + list);
}

Result<std::uint16_t> parseKey(std::string_view text) {
  std::string name = folded(text);
  if (modifierOf(name)) {
    return badKey(text, "is a modifier key: a keystroke needs another key after it");
  }
  if (name == kBackspace) {
    return kBackspaceKey;
  }
  for (const auto& [word, advice] : kAmbiguousNames) {
    if (name == word) {
      return badKey(text, std::string("may mean two keys: ") + advice);
    }
  }
  for (const auto& [word, meant] : kOtherNames) {
    name = name == word ? meant : name;
  }
  if (name.starts_with(kKeypadPrefix) && name.size() > kKeypadPrefix.size()) {
    return onlyOne(text, keysNamed(name.substr(kKeypadPrefix.size()), true));
  }
  auto codes = keysNamed(name, false);
  return onlyOne(text, codes.empty() && !isOneCharacter(name) ? keysNamed(name, true) : codes);
}

}  // namespace

Result<std::uint16_t> parseModifiers(std::string_view text) {
  if (const auto number = parseValue(text, plist::Type::kInteger)) {
    const std::int64_t mask = number.value().asInt64();
    if ((mask & ~std::int64_t{kAllModifiers}) != 0) {
      return badKey(text, "is no modifier mask");
    }
    return static_cast<std::uint16_t>(mask);
  }
  return text.empty() ? Result<std::uint16_t>(std::uint16_t{0}) : maskOf(partsOf(text));
}

Result<KeyCombination> parseKeystroke(std::string_view text) {
  auto parts = partsOf(text);
  std::string keyName(parts.back());
  parts.pop_back();
  if (!parts.empty() && folded(parts.back()) == kKeypadPrefix) {
    keyName.insert(0, kKeypadPrefix);
    parts.pop_back();
  }
  if (keyName.empty()) {
    return badKey(text, "names no key");
  }
  const auto modifiers = maskOf(parts);
  if (!modifiers) {
    return modifiers.error();
  }
  if (GetKeyboardInformation(nullptr, kStringTable) < 0) {
    return Error{
        kNotFound, "the keyboard layout cannot be read; give the place of the key with --key CODE", {}};
  }
  const auto key = parseKey(keyName);
  if (!key) {
    return key.error();
  }
  return KeyCombination{key.value(), modifiers.value()};
}

Result<std::uint16_t> parseKeyCode(std::string_view text) {
  const auto number = parseValue(text, plist::Type::kInteger);
  const std::int64_t code = number ? number.value().asInt64() : -1;
  if ((code < 0 || code > kLastKeyCode) && code != kNoKeyCode) {
    return badKey(text, "is no virtual key code: 0 to 126, or 255 for no key");
  }
  return static_cast<std::uint16_t>(code);
}

}  // namespace veltrix::ctl
