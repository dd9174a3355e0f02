#include "util/hex_number.h"

#include <charconv>

namespace veltrix {

bool parseHex(std::string_view text, std::size_t digits, std::uint16_t* value) {
  if (text.empty() || text.size() > digits)
    return false;
  std::uint16_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  if (error != std::errc() || end != text.data() + text.size())
    return false;
  *value = number;
  return true;
}

}  // namespace veltrix
