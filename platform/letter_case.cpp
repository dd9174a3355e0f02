#include "platform/letter_case.h"

#include <locale.h>
#include <wctype.h>

#include <cstddef>

#include "platform/text_encoding.h"

namespace veltrix {

namespace {

constexpr char32_t kBehindUnicode = 0x110000;

// The C library's table of all letters, whatever the process's locale; it comes with the C library itself.
// Lives as long as the process.
locale_t unicodeLocale() {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale;
}

char32_t nextLowerCase(std::string_view text, std::size_t& at) {
  const auto letter = nextUtf8(text, at);
  if (!letter) {
    return kBehindUnicode + static_cast<unsigned char>(text[at++]);
  }
  if (*letter < 0x80 || unicodeLocale() == nullptr) {
    return *letter >= U'A' && *letter <= U'Z' ? *letter + (U'a' - U'A') : *letter;
  }
  return static_cast<char32_t>(towlower_l(static_cast<wint_t>(*letter), unicodeLocale()));
}

}  // namespace

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  std::size_t atA = 0;
  std::size_t atB = 0;
  while (atA < a.size() && atB < b.size()) {
    if (nextLowerCase(a, atA) != nextLowerCase(b, atB)) {
      return false;
    }
  }
  return atA == a.size() && atB == b.size();
}

}  // namespace veltrix
