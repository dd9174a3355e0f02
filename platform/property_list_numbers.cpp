#include "platform/property_list_numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace veltrix::plist {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Takes the sign off; true when it was '-'.
bool takeSign(std::string_view& text) {
  if (text.empty() || (text[0] != '-' && text[0] != '+')) {
    return false;
  }
  const bool negative = text[0] == '-';
  text.remove_prefix(1);
  return negative;
}

}  // namespace

std::optional<std::int64_t> parseInteger(std::string_view text) {
  text = trimmed(text);
  const bool negative = takeSign(text);
  int base = 10;
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    base = 16;
    text.remove_prefix(2);
  }
  std::uint64_t magnitude = 0;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
  if (status != std::errc() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  constexpr auto kHighest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (magnitude > kHighest + (negative ? 1U : 0U)) {
    return std::nullopt;
  }
  return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

std::optional<double> parseReal(std::string_view text) {
  text = trimmed(text);
  const bool negative = takeSign(text);
  // The conversion would take a second sign and a not-a-number's payload too.
  if (text.empty() || text[0] == '-' || text.find('(') != std::string_view::npos) {
    return std::nullopt;
  }
  double value = 0;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (status != std::errc() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  return negative ? -value : value;
}

std::string formatReal(double value) {
  if (std::isnan(value)) {
    return "nan";
  }
  char text[32];
  const auto result = std::to_chars(text, text + sizeof text, value);
  return {text, result.ptr};
}

}  // namespace veltrix::plist
