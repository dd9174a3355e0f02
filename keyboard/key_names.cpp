#include "keyboard/key_names.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "keyboard/layout_access.h"
#include "keyboard/virtual_keys.h"
#include "platform/mac_roman.h"
#include "platform/text_encoding.h"
#include "settings/modifier_mask.h"

namespace {

constexpr std::uint8_t kFunctionKeyCharacter = 0x10;
constexpr std::uint8_t kEscapeCharacter = 0x1B;
constexpr std::uint8_t kDeleteCharacter = 0x7F;
constexpr std::uint16_t kCharacterIndexMask = 127;
constexpr std::string_view kPlus = "+";
constexpr std::string_view kWordSpace = "\u00a0";

struct NamedCharacter {
  std::uint8_t character;
  std::string_view name;
};

// The keys that are known by the control character that they type.
constexpr auto kNamedCharacters = std::to_array<NamedCharacter>({{0x1C, "left"},
                                                                 {0x1D, "right"},
                                                                 {0x1E, "up"},
                                                                 {0x1F, "down"},
                                                                 {0x01, "home"},
                                                                 {0x03, "enter"},
                                                                 {0x04, "end"},
                                                                 {0x05, "help"},
                                                                 {0x08, "delete"},
                                                                 {0x09, "tab"},
                                                                 {0x0B, "page up"},
                                                                 {0x0C, "page down"},
                                                                 {0x0D, "return"},
                                                                 {0x20, "space"},
                                                                 {kDeleteCharacter, "forward delete"}});

// The key codes of F1 to F15.
constexpr auto kFunctionKeys =
    std::to_array<std::uint16_t>({122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111, 105, 107, 113});

// The names of the modifier keys, whose codes follow one another.
constexpr std::uint16_t kFirstModifierKey = 55;
constexpr auto kModifierKeys =
    std::to_array<std::string_view>({"Command", "Shift", "Caps Lock", "Option", "Control"});

struct NamedModifier {
  std::uint16_t bit;
  std::string_view name;
};

// In the order in which names show them, which users rely on: Control always first.
constexpr auto kModifierOrder = std::to_array<NamedModifier>({{veltrix::kControlModifier, "Control"},
                                                              {veltrix::kCommandModifier, "Command"},
                                                              {veltrix::kOptionModifier, "Option"},
                                                              {veltrix::kShiftModifier, "Shift"},
                                                              {veltrix::kCapsLockModifier, "Caps Lock"}});

struct Context {
  std::optional<veltrix::Bundle> bundle;
  std::optional<std::string> tableName;
  std::array<std::uint8_t, kCharacterIndexMask + 1> characters{};
};

Context& context() {
  static Context theOne;
  return theOne;
}

constexpr bool isInKeypadBlock(std::uint16_t keyCode) {
  return keyCode >= 65 && keyCode <= 92;
}

std::string textOfCharacter(std::uint8_t character, bool upperCase) {
  const bool isLowerCaseLetter = character >= 'a' && character <= 'z';
  std::string text;
  veltrix::appendUtf8(text, upperCase && isLowerCaseLetter ? char32_t{character} - 'a' + 'A'
                                                           : veltrix::unicodeFromMacRoman(character));
  return text;
}

std::string nameOfFunctionKey(std::uint16_t keyCode) {
  const std::string letter = KeyNamesLocStr("F");
  const auto* const found = std::find(kFunctionKeys.begin(), kFunctionKeys.end(), keyCode);
  return found != kFunctionKeys.end() ? letter + std::to_string(found - kFunctionKeys.begin() + 1) : letter;
}

std::string nameOfControlCharacter(std::uint16_t keyCode, std::uint8_t character) {
  if (character == kFunctionKeyCharacter) {
    return nameOfFunctionKey(keyCode);
  }
  if (character == kEscapeCharacter) {
    return KeyNamesLocStr(keyCode == veltrix::kVirtualEscape ? "esc" : "clear");
  }
  const auto* const found =
      std::find_if(kNamedCharacters.begin(), kNamedCharacters.end(),
                   [character](const NamedCharacter& named) { return named.character == character; });
  return KeyNamesLocStr(found != kNamedCharacters.end() ? found->name : "???");
}

}  // namespace

std::int32_t GetKeyboardInformation(const veltrix::Bundle* bundle, const char* tableName) {
  auto& names = context();
  names.bundle = bundle != nullptr ? std::optional(*bundle) : std::nullopt;
  names.tableName = tableName != nullptr ? std::optional<std::string>(tableName) : std::nullopt;
  const veltrix::KeyboardLayout* layout = nullptr;
  const void* legacyLayout = nullptr;
  if (const auto status = CompatibleGetKeyboardLayout(&layout, &legacyLayout); status != 0) {
    return status;
  }
  // Code 127 keeps its 0: it stands for all codes that no key has, 255 among them.
  std::uint32_t deadKeyState = 0;
  std::uint8_t last = 0;
  for (std::uint8_t keyCode = 0; keyCode < kCharacterIndexMask; ++keyCode) {
    last = CompatibleKeyTranslate(keyCode, veltrix::kCommandModifier, layout, legacyLayout, &deadKeyState);
    names.characters[keyCode] = last;
  }
  return last;
}

std::uint8_t GetKeyChar(std::uint16_t keyCode) {
  return context().characters[keyCode & kCharacterIndexMask];
}

std::string KeyNamesLocStr(std::string_view english) {
  const auto& names = context();
  return names.bundle && names.tableName ? names.bundle->localizedString(english, "", *names.tableName)
                                         : std::string(english);
}

std::string GetKeyName(std::uint16_t keyCode) {
  return GetKeyNameWithCase(keyCode, false);
}

std::string GetKeyNameWithCase(std::uint16_t keyCode, bool upperCase) {
  if (keyCode >= kFirstModifierKey && keyCode < kFirstModifierKey + kModifierKeys.size()) {
    return KeyNamesLocStr(kModifierKeys[keyCode - kFirstModifierKey]);
  }
  if (keyCode == veltrix::kVirtualApplication) {
    return KeyNamesLocStr("application");
  }
  const auto character = GetKeyChar(keyCode);
  if (character > ' ' && character != kDeleteCharacter) {
    return textOfCharacter(character, upperCase);
  }
  return keyCode >= veltrix::kNoVirtualKey ? std::string() : nameOfControlCharacter(keyCode, character);
}

std::string veltrix::joinKeyNames(std::string_view left, std::string_view separator, std::string_view right) {
  if (!separator.empty() && left.ends_with(kWordSpace)) {
    left.remove_suffix(kWordSpace.size());
  }
  std::string joined(left);
  joined += separator;
  joined += right;
  return joined;
}

std::string GetModifiersName(std::uint16_t keyCode, std::uint16_t modifiers) {
  return GetModifiersNameWithSep(keyCode, modifiers, kPlus);
}

std::string GetModifiersNameWithSep(std::uint16_t keyCode, std::uint16_t modifiers,
                                    std::optional<std::string_view> separator) {
  std::string names;
  bool first = true;
  const auto append = [&](std::string_view english) {
    const std::string name = KeyNamesLocStr(english);
    names = first ? name : veltrix::joinKeyNames(names, separator.value_or(std::string_view()), name);
    first = false;
  };
  for (const auto& modifier : kModifierOrder) {
    if ((modifiers & modifier.bit) != 0) {
      append(modifier.name);
    }
  }
  if (isInKeypadBlock(keyCode)) {
    append("Num");
  }
  return names;
}

std::string GetKeyCombinationName(std::uint16_t keyCode, std::uint16_t modifiers) {
  return GetKeyCombinationNameWithSepAndCase(keyCode, modifiers, kPlus, kPlus, false);
}

std::string GetKeyCombinationNameWithSep(std::uint16_t keyCode, std::uint16_t modifiers,
                                         std::optional<std::string_view> modifierSeparator,
                                         std::optional<std::string_view> keySeparator) {
  return GetKeyCombinationNameWithSepAndCase(keyCode, modifiers, modifierSeparator, keySeparator, false);
}

std::string GetKeyCombinationNameWithSepAndCase(std::uint16_t keyCode, std::uint16_t modifiers,
                                                std::optional<std::string_view> modifierSeparator,
                                                std::optional<std::string_view> keySeparator,
                                                bool upperCase) {
  if (keyCode == veltrix::kNoVirtualKey && modifiers == 0) {
    return KeyNamesLocStr("(none)");
  }
  const std::string modifierPart = modifiers != 0 || isInKeypadBlock(keyCode)
                                       ? GetModifiersNameWithSep(keyCode, modifiers, modifierSeparator)
                                       : std::string();
  const std::string keyPart =
      keyCode < veltrix::kNoVirtualKey ? GetKeyNameWithCase(keyCode, upperCase) : std::string();
  const bool separated = keySeparator && !modifierPart.empty() && !keyPart.empty();
  return veltrix::joinKeyNames(modifierPart, separated ? *keySeparator : std::string_view(), keyPart);
}
