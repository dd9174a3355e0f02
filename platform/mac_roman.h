#pragma once

#include <cstdint>
#include <optional>

// Mac OS Roman, the encoding of the characters in key tables, as it is since it has the euro sign (0xDB).
namespace veltrix {

// What stands for a character that Mac OS Roman does not have.
inline constexpr std::uint8_t kMacRomanSubstitute = '?';

// The character of a byte; every byte has one. 0xF0 is a code point of the private-use area.
char16_t unicodeFromMacRoman(std::uint8_t byte);

// The byte of a character; nothing when Mac OS Roman does not have it.
std::optional<std::uint8_t> macRomanFromUnicode(char16_t character);

// The same, with kMacRomanSubstitute for nothing.
std::uint8_t macRomanOrSubstitute(char16_t character);

}  // namespace veltrix
