#include "platform/property_list_text_scanner.h"

#include <algorithm>
#include <utility>

#include "platform/text_encoding.h"

namespace veltrix::plist {

namespace {

constexpr std::size_t kNoDigit = 16;

std::size_t hexDigit(char c) {
  if (c >= '0' && c <= '9') {
    return static_cast<std::size_t>(c - '0');
  }
  if (c >= 'a' && c <= 'f') {
    return 10 + static_cast<std::size_t>(c - 'a');
  }
  return c >= 'A' && c <= 'F' ? 10 + static_cast<std::size_t>(c - 'A') : kNoDigit;
}

bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isWordCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         std::string_view("_$/:.-").find(c) != std::string_view::npos;
}

}  // namespace

bool TextScanner::fail(std::size_t offset, std::string message) {
  fError = Error{0, std::move(message), offset};
  return false;
}

bool TextScanner::next(char c) {
  if (atEnd() || fText[fAt] != c) {
    return false;
  }
  ++fAt;
  return true;
}

// Blanks and comments.
bool TextScanner::skip() {
  while (!atEnd()) {
    if (isBlank(fText[fAt])) {
      ++fAt;
    } else if (startsWith("//")) {
      fAt = std::min(fText.find_first_of("\r\n", fAt), fText.size());
    } else if (startsWith("/*")) {
      const std::size_t end = fText.find("*/", fAt + 2);
      if (end == std::string_view::npos) {
        return fail(fAt, "a comment without an end");
      }
      fAt = end + 2;
    } else {
      break;
    }
  }
  return true;
}

bool TextScanner::string(std::string& out) {
  const std::size_t start = fAt;
  if (startsWith("\"") || startsWith("'")) {
    return quoted(out);
  }
  while (!atEnd() && isWordCharacter(fText[fAt]) && !startsWith("//") && !startsWith("/*")) {
    ++fAt;
  }
  if (fAt == start) {
    return fail(start, "a character that starts no value");
  }
  out.append(fText.substr(start, fAt - start));
  return true;
}

bool TextScanner::data(Data& out) {
  const std::size_t start = fAt;
  std::size_t high = kNoDigit;
  for (++fAt; !atEnd() && fText[fAt] != '>'; ++fAt) {
    if (isBlank(fText[fAt])) {
      continue;
    }
    const std::size_t digit = hexDigit(fText[fAt]);
    if (digit == kNoDigit) {
      return fail(fAt, "a character in data that is no hexadecimal digit");
    }
    if (high == kNoDigit) {
      high = digit;
    } else {
      out.push_back(static_cast<std::byte>(high << 4U | digit));
      high = kNoDigit;
    }
  }
  if (high != kNoDigit || !next('>')) {
    return fail(start, "data with half a byte or without an end");
  }
  return true;
}

bool TextScanner::quoted(std::string& out) {
  const std::size_t start = fAt;
  const char quote = fText[fAt++];
  const char ends[] = {quote, '\\', '\0'};
  while (true) {
    const std::size_t end = fText.find_first_of(ends, fAt);
    if (end == std::string_view::npos) {
      return fail(start, "a string without an end");
    }
    out.append(fText.substr(fAt, end - fAt));
    fAt = end + 1;
    if (fText[end] == quote) {
      return true;
    }
    if (!escape(out)) {
      return false;
    }
  }
}

// What follows a backslash. One before any other character than the known ones stands for that character, as
// before a quote or a line end.
bool TextScanner::escape(std::string& out) {
  if (atEnd()) {
    return fail(fAt - 1, "a string without an end");
  }
  const char c = fText[fAt];
  if (c == 'U' || c == 'u') {
    return unicode(out);
  }
  if (c >= '0' && c <= '7') {
    return octal(out);
  }
  constexpr std::string_view kNames = "abfnrtv";
  constexpr std::string_view kMeanings = "\a\b\f\n\r\t\v";
  const std::size_t known = kNames.find(c);
  out.push_back(known == std::string_view::npos ? c : kMeanings[known]);
  ++fAt;
  return true;
}

// One to three digits.
bool TextScanner::octal(std::string& out) {
  char32_t code = 0;
  const std::size_t end = std::min(fAt + 3, fText.size());
  const std::size_t start = fAt;
  for (; fAt < end && fText[fAt] >= '0' && fText[fAt] <= '7'; ++fAt) {
    code = code << 3U | static_cast<char32_t>(fText[fAt] - '0');
  }
  if (code > 0xFF) {
    return fail(start - 1, "an octal escape beyond one byte");
  }
  appendUtf8(out, code);
  return true;
}

// An escaped UTF-16 unit, and the escaped second half when it is the first half of a pair.
bool TextScanner::unicode(std::string& out) {
  const std::size_t start = fAt - 1;
  char32_t unit = 0;
  if (!unicodeUnit(unit)) {
    return false;
  }
  if (isSurrogate(unit)) {
    char32_t second = 0;
    if (unit >= 0xDC00 || !(startsWith("\\U") || startsWith("\\u"))) {
      return fail(start, "half a surrogate pair");
    }
    ++fAt;
    if (!unicodeUnit(second)) {
      return false;
    }
    if (second < 0xDC00 || second > 0xDFFF) {
      return fail(start, "half a surrogate pair");
    }
    unit = 0x10000 + ((unit - 0xD800) << 10U) + (second - 0xDC00);
  }
  appendUtf8(out, unit);
  return true;
}

// The letter U with one to four digits.
bool TextScanner::unicodeUnit(char32_t& unit) {
  const std::size_t start = fAt++;
  for (std::size_t i = 0; i < 4 && !atEnd() && hexDigit(fText[fAt]) != kNoDigit; ++i) {
    unit = unit << 4U | static_cast<char32_t>(hexDigit(fText[fAt++]));
  }
  return fAt > start + 1 || fail(start - 1, "a Unicode escape without digits");
}

}  // namespace veltrix::plist
