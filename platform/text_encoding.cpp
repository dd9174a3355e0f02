#include "platform/text_encoding.h"

#include <cstdint>
#include <cstring>

namespace veltrix {

namespace {

unsigned char byteAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

void appendUnit(std::string& out, char32_t unit) {
  out.push_back(static_cast<char>(static_cast<unsigned char>(unit >> 8U)));
  out.push_back(static_cast<char>(static_cast<unsigned char>(unit & 0xFFU)));
}

// The index of the first byte from `at` on that is not ASCII, looking at eight at a time.
std::size_t skipAscii(std::string_view text, std::size_t at) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  for (std::uint64_t eight = 0; text.size() - at >= sizeof eight; at += sizeof eight) {
    std::memcpy(&eight, text.data() + at, sizeof eight);
    if ((eight & kHighBits) != 0) {
      break;
    }
  }
  while (at < text.size() && byteAt(text, at) < 0x80) {
    ++at;
  }
  return at;
}

}  // namespace

void appendUtf8(std::string& out, char32_t codePoint) {
  const auto byte = [&out](char32_t value) {
    out.push_back(static_cast<char>(static_cast<unsigned char>(value)));
  };
  if (codePoint < 0x80) {
    byte(codePoint);
  } else if (codePoint < 0x800) {
    byte(0xC0U | codePoint >> 6U);
    byte(0x80U | (codePoint & 0x3FU));
  } else if (codePoint < 0x10000) {
    byte(0xE0U | codePoint >> 12U);
    byte(0x80U | (codePoint >> 6U & 0x3FU));
    byte(0x80U | (codePoint & 0x3FU));
  } else {
    byte(0xF0U | codePoint >> 18U);
    byte(0x80U | (codePoint >> 12U & 0x3FU));
    byte(0x80U | (codePoint >> 6U & 0x3FU));
    byte(0x80U | (codePoint & 0x3FU));
  }
}

std::optional<char32_t> nextUtf8(std::string_view text, std::size_t& at) {
  const unsigned char first = byteAt(text, at);
  if (first < 0x80) {
    ++at;
    return first;
  }
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() - at < length) {
    return std::nullopt;
  }
  char32_t codePoint = first & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned char next = byteAt(text, at + i);
    if ((next & 0xC0U) != 0x80) {
      return std::nullopt;
    }
    codePoint = codePoint << 6U | (next & 0x3FU);
  }
  constexpr char32_t kLowest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (codePoint < kLowest[length] || codePoint > 0x10FFFF || isSurrogate(codePoint)) {
    return std::nullopt;
  }
  at += length;
  return codePoint;
}

std::optional<std::size_t> firstBadUtf8(std::string_view text) {
  std::size_t at = skipAscii(text, 0);
  while (at < text.size()) {
    if (!nextUtf8(text, at)) {
      return at;
    }
    at = skipAscii(text, at);
  }
  return std::nullopt;
}

bool isAscii(std::string_view text) {
  return skipAscii(text, 0) == text.size();
}

std::optional<std::size_t> appendUtf16AsUtf8(std::string_view bytes, ByteOrder order, std::string& out) {
  const std::size_t high = order == ByteOrder::kBigEndian ? 0 : 1;
  const auto unitAt = [&](std::size_t at) -> char32_t {
    return static_cast<char32_t>(byteAt(bytes, at + high) << 8U | byteAt(bytes, at + 1 - high));
  };
  std::size_t at = 0;
  for (; bytes.size() - at >= 2; at += 2) {
    char32_t unit = unitAt(at);
    if (isSurrogate(unit)) {
      const char32_t second = bytes.size() - at >= 4 ? unitAt(at + 2) : 0;
      if (unit >= 0xDC00 || second < 0xDC00 || second > 0xDFFF) {
        return at;
      }
      unit = 0x10000 + ((unit - 0xD800) << 10U) + (second - 0xDC00);
      at += 2;
    }
    appendUtf8(out, unit);
  }
  return at == bytes.size() ? std::nullopt : std::optional(at);
}

std::size_t utf16Units(std::string_view utf8, std::size_t bytes) {
  std::size_t units = 0;
  for (const char c : utf8.substr(0, bytes)) {
    const auto byte = static_cast<unsigned char>(c);
    units += byte >= 0xF0 ? 2U : (byte & 0xC0U) != 0x80 ? 1U : 0U;
  }
  return units;
}

std::string utf16BigEndian(std::string_view utf8) {
  std::string out;
  out.reserve(utf8.size() * 2);
  for (std::size_t at = 0; at < utf8.size();) {
    const std::optional<char32_t> codePoint = nextUtf8(utf8, at);
    if (!codePoint) {
      break;
    }
    if (*codePoint < 0x10000) {
      appendUnit(out, *codePoint);
    } else {
      appendUnit(out, 0xD800 + ((*codePoint - 0x10000) >> 10U));
      appendUnit(out, 0xDC00 + (*codePoint & 0x3FFU));
    }
  }
  return out;
}

}  // namespace veltrix
