#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Strict conversions between the Unicode encodings. Nothing is repaired: input that is not well formed is
// refused, with the place where it stops being so.
namespace veltrix {

// Appends the UTF-8 form of a code point, which must be 0 to 0x10FFFF and no surrogate.
void appendUtf8(std::string& out, char32_t codePoint);

constexpr bool isSurrogate(char32_t unit) {
  return unit >= 0xD800 && unit <= 0xDFFF;
}

// The code point at `at`, which is moved past it; nothing (and `at` as it was) when the bytes there are not
// UTF-8. Overlong forms, surrogates and values above 0x10FFFF are not.
std::optional<char32_t> nextUtf8(std::string_view text, std::size_t& at);

// The offset of the first byte that does not belong to well-formed UTF-8; nothing when all do.
std::optional<std::size_t> firstBadUtf8(std::string_view text);

bool isAscii(std::string_view text);

enum class ByteOrder { kBigEndian, kLittleEndian };

// Appends UTF-16 bytes to `out` as UTF-8. Gives the offset of the first unit that is half a pair or half a
// unit, with `out` holding what came before it; nothing when all was converted.
std::optional<std::size_t> appendUtf16AsUtf8(std::string_view bytes, ByteOrder order, std::string& out);

// The number of UTF-16 units that a prefix of well-formed UTF-8 has; `bytes` is its length.
std::size_t utf16Units(std::string_view utf8, std::size_t bytes);

// Well-formed UTF-8 as UTF-16, most significant byte first, without a byte-order mark.
std::string utf16BigEndian(std::string_view utf8);

}  // namespace veltrix
