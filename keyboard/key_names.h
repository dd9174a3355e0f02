#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/bundle.h"

// Names of keys and key combinations under the current keyboard layout. A key code is a virtual key code (0
// to 254), 255 for no key; a modifier mask is that of settings/modifier_mask.h, other bits are passed over.
// Names are UTF-8. Process-wide state, filled by GetKeyboardInformation; on the main thread only.

// Reads the current layout and takes the string table in which the words of names are looked up; `bundle` may
// be null (then the words are English) and is copied. Gives the character of the last key, else a negative
// status, with the characters as they were before: -192 without a layout.
std::int32_t GetKeyboardInformation(const veltrix::Bundle* bundle, const char* tableName);

// The character (Mac OS Roman) that the key types with Command held; 0 for none.
std::uint8_t GetKeyChar(std::uint16_t keyCode);

// The text of an English word in the user's language; the word itself when there is none.
std::string KeyNamesLocStr(std::string_view english);

std::string GetKeyName(std::uint16_t keyCode);
std::string GetKeyNameWithCase(std::uint16_t keyCode, bool upperCase);

namespace veltrix {

// `left`, the separator and `right`. Words of held keys may end with a no-break space, for names in which
// nothing stands between them; a separator takes its place.
std::string joinKeyNames(std::string_view left, std::string_view separator, std::string_view right);

}  // namespace veltrix

// The names of the modifiers, Control first, then "Num" for a key of the keypad. Without a separator nothing
// stands between two names.
std::string GetModifiersName(std::uint16_t keyCode, std::uint16_t modifiers);  // with "+"
std::string GetModifiersNameWithSep(std::uint16_t keyCode, std::uint16_t modifiers,
                                    std::optional<std::string_view> separator);

// The name of the whole combination.
std::string GetKeyCombinationName(std::uint16_t keyCode, std::uint16_t modifiers);  // with "+"
std::string GetKeyCombinationNameWithSep(std::uint16_t keyCode, std::uint16_t modifiers,
                                         std::optional<std::string_view> modifierSeparator,
                                         std::optional<std::string_view> keySeparator);
std::string GetKeyCombinationNameWithSepAndCase(std::uint16_t keyCode, std::uint16_t modifiers,
                                                std::optional<std::string_view> modifierSeparator,
                                                std::optional<std::string_view> keySeparator, bool upperCase);
