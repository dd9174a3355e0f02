#include "helper/desktop/one_line.h"

#include <optional>

#include "platform/text_encoding.h"

namespace veltrix {

namespace {

constexpr std::size_t kMostBytes = 200;
constexpr char32_t kLineSeparator = 0x2028;
constexpr char32_t kParagraphSeparator = 0x2029;

bool breaksLine(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == kLineSeparator ||
         character == kParagraphSeparator;
}

}  // namespace

std::string oneLine(std::string_view text) {
  std::string line;
  for (std::size_t at = 0; at < text.size();) {
    if (line.size() >= kMostBytes) {
      return line + "…";
    }
    const std::optional<char32_t> character = nextUtf8(text, at);
    at += character ? 0 : 1;
    if (!character || breaksLine(*character)) {
      line += '?';
    } else {
      appendUtf8(line, *character);
    }
  }
  return line;
}

}  // namespace veltrix
