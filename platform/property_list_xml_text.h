#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Characters as XML carries them.
namespace veltrix::plist {

// Whether XML 1.0 may hold the character at all, escaped or not.
constexpr bool isXmlCharacter(char32_t c) {
  return c >= 0x20 ? c != 0xFFFE && c != 0xFFFF : c == '\t' || c == '\n' || c == '\r';
}

// The offset of the first byte that is no UTF-8 or belongs to a character that XML cannot hold; nothing when
// there is none.
std::optional<std::size_t> firstBadXmlCharacter(std::string_view utf8);

// Appends raw text with its character references resolved. Only the five names that every XML document knows
// and numbers are taken; anything else after '&' gives its offset in `raw`.
std::optional<std::size_t> appendUnescaped(std::string_view raw, std::string& out);

// Appends text so that a reader gets back every character of it, line ends included.
void appendEscaped(std::string_view text, std::string& out);

}  // namespace veltrix::plist
