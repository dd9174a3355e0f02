#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace veltrix {

// The integer at the start of a typed text: ASCII blanks and a sign may come before it, what follows its
// digits plays no part. 0 without digits; values beyond 32 bits saturate.
std::int32_t typedInteger(std::u16string_view typed);

// A number as it takes the place of what was typed.
struct ShownNumber {
  std::string text;
  int caret = 0;            // 0 to the length of the text
  bool isSelected = false;  // the whole text, so that the next digit takes its place
};

// Shows `value` in place of the text `typed` with the caret at `caret`, in UTF-16 units: the caret stays
// behind the digit that it stood behind. A zero that nobody typed is selected.
ShownNumber shownNumber(std::int32_t value, std::u16string_view typed, int caret);

}  // namespace veltrix
