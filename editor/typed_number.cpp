#include "editor/typed_number.h"

#include <algorithm>
#include <limits>

#include "platform/property_list.h"

namespace veltrix {

namespace {

constexpr std::u16string_view kBlanks = u" \t\n\v\f\r";

// Where the digits that show begin: behind blanks, a sign and leading zeros.
std::size_t firstShownDigit(std::u16string_view typed) {
  std::size_t at = std::min(typed.find_first_not_of(kBlanks), typed.size());
  if (at < typed.size() && (typed[at] == u'-' || typed[at] == u'+')) {
    ++at;
  }
  const auto isDigit = [typed](std::size_t place) {
    return place < typed.size() && typed[place] >= u'0' && typed[place] <= u'9';
  };
  while (typed.substr(at, 1) == u"0" && isDigit(at + 1)) {
    ++at;
  }
  return at;
}

}  // namespace

std::int32_t typedInteger(std::u16string_view typed) {
  std::string ascii;
  for (const char16_t unit : typed) {
    ascii += unit < 0x80 ? static_cast<char>(unit) : '?';  // ends a number, as any other character does
  }
  constexpr std::int64_t kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(plist::Value(ascii).asInt64(), kLowest, kHighest));
}

ShownNumber shownNumber(std::int32_t value, std::u16string_view typed, int caret) {
  ShownNumber shown;
  shown.text = std::to_string(value);
  shown.isSelected = value == 0 && typed != u"0";
  const int dropped = static_cast<int>(firstShownDigit(typed)) - (value < 0 ? 1 : 0);
  shown.caret = std::clamp(caret - dropped, 0, static_cast<int>(shown.text.size()));
  return shown;
}

}  // namespace veltrix
