#include "helper/device_entry.h"

#include <cstring>

#include "platform/text_encoding.h"

namespace veltrix {

namespace {

constexpr std::size_t kFieldSize = 128;

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

void setEntryText(char (&field)[128], std::string_view text) {
  std::size_t length = text.size();
  if (length >= kFieldSize) {
    length = kFieldSize - 1;
    while (length > 0 && continuesCharacter(text[length])) --length;
  }
  std::memset(field, 0, kFieldSize);
  if (length > 0)
    std::memcpy(field, text.data(), length);
}

std::string entryText(const char (&field)[128]) {
  return {field, strnlen(field, kFieldSize)};
}

std::string busText(std::string_view text) {
  std::string result;
  for (;;) {
    const auto bad = firstBadUtf8(text);
    result += text.substr(0, bad.value_or(text.size()));
    if (!bad)
      return result;
    result += "\xEF\xBF\xBD";
    text.remove_prefix(*bad + 1);
  }
}

}  // namespace veltrix
