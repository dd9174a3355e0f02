#include "platform/property_list_text_reader.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "platform/property_list_limits.h"
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

class Reader {
 public:
  explicit Reader(std::string_view text) : fText(text) {}
  Result<Value> run();

 private:
  bool fail(std::size_t offset, std::string message);
  bool atEnd() const { return fAt >= fText.size(); }
  bool startsWith(std::string_view start) const { return fText.substr(fAt, start.size()) == start; }
  bool next(char c);  // takes it when it is next
  bool skip();
  bool document(Value& out);
  bool value(std::size_t depth, Value& out);
  bool array(std::size_t depth, Value& out);
  bool dictionary(std::size_t depth, Value& out);
  bool entry(std::size_t depth, std::string_view key, Dictionary& out);
  bool data(Value& out);
  bool string(std::string& out);
  bool quoted(std::string& out);
  bool escape(std::string& out);
  bool unicode(std::string& out);
  bool unicodeUnit(char32_t& unit);

  std::string_view fText;
  std::size_t fAt = 0;
  std::optional<Error> fError;
  Budget fBudget;
};

bool Reader::fail(std::size_t offset, std::string message) {
  fError = Error{0, std::move(message), offset};
  return false;
}

bool Reader::next(char c) {
  if (atEnd() || fText[fAt] != c) {
    return false;
  }
  ++fAt;
  return true;
}

// Blanks and comments.
bool Reader::skip() {
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

Result<Value> Reader::run() {
  if (const auto bad = firstBadUtf8(fText)) {
    return Error{0, "not UTF-8", *bad};
  }
  Value root;
  if (!document(root)) {
    return *fError;
  }
  return root;
}

bool Reader::document(Value& out) {
  if (!skip()) {
    return false;
  }
  if (atEnd()) {
    return fail(fAt, "an empty document");
  }
  const std::size_t start = fAt;
  if (!value(1, out) || !skip()) {
    return false;
  }
  if (atEnd()) {
    return true;
  }
  if (out.stringIf() == nullptr || fText[fAt] != '=') {
    return fail(fAt, "text after the end");
  }
  // A string that is given a value: the braces around the dictionary were left out.
  fAt = start;
  return dictionary(1, out) && (atEnd() || fail(fAt, "text after the end"));
}

bool Reader::value(std::size_t depth, Value& out) {
  const std::size_t start = fAt;
  if (atEnd()) {
    return fail(start, "no value");
  }
  if (startsWith("{") || startsWith("(")) {
    if (depth > kMaximumNesting) {
      return fail(start, "nested too deeply");
    }
    if (!fBudget.take()) {
      return fail(start, "too many values");
    }
    if (next('(')) {
      return array(depth, out);
    }
    ++fAt;
    return dictionary(depth, out) && (next('}') || fail(start, "a dictionary without an end"));
  }
  if (startsWith("<")) {
    return data(out);
  }
  std::string text;
  if (!string(text)) {
    return false;
  }
  out = std::move(text);
  return true;
}

// What follows '('. A comma may stand after the last value.
bool Reader::array(std::size_t depth, Value& out) {
  Array result = Array::create();
  while (true) {
    if (!skip()) {
      return false;
    }
    if (next(')')) {
      break;
    }
    Value item;
    if (!value(depth + 1, item) || !skip()) {
      return false;
    }
    result.append(std::move(item));
    if (!next(',') && !startsWith(")")) {
      return fail(fAt, "no ',' or ')' after a value");
    }
  }
  out = std::move(result);
  return true;
}

// Entries up to '}', which is left there, or up to the end.
bool Reader::dictionary(std::size_t depth, Value& out) {
  Dictionary result = Dictionary::create();
  while (true) {
    if (!skip()) {
      return false;
    }
    if (atEnd() || startsWith("}")) {
      break;
    }
    std::string key;
    if (!string(key) || !entry(depth, key, result)) {
      return false;
    }
  }
  out = std::move(result);
  return true;
}

// What follows a key.
bool Reader::entry(std::size_t depth, std::string_view key, Dictionary& out) {
  if (!skip()) {
    return false;
  }
  if (!next('=')) {
    return fail(fAt, "no '=' after a key");
  }
  Value item;
  if (!skip() || !value(depth + 1, item) || !skip()) {
    return false;
  }
  if (!next(';')) {
    return fail(fAt, "no ';' after a value");
  }
  out.set(key, std::move(item));
  return true;
}

bool Reader::data(Value& out) {
  const std::size_t start = fAt;
  Data result;
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
      result.push_back(static_cast<std::byte>(high << 4U | digit));
      high = kNoDigit;
    }
  }
  if (high != kNoDigit || !next('>')) {
    return fail(start, "data with half a byte or without an end");
  }
  out = std::move(result);
  return fBudget.take(out.dataIf()->size()) || fail(start, "too many values");
}

bool Reader::string(std::string& out) {
  const std::size_t start = fAt;
  if (startsWith("\"") || startsWith("'")) {
    if (!quoted(out)) {
      return false;
    }
  } else {
    while (!atEnd() && isWordCharacter(fText[fAt]) && !startsWith("//") && !startsWith("/*")) {
      ++fAt;
    }
    if (fAt == start) {
      return fail(start, "a character that starts no value");
    }
    out = fText.substr(start, fAt - start);
  }
  return fBudget.take(out.size()) || fail(start, "too many values");
}

bool Reader::quoted(std::string& out) {
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
bool Reader::escape(std::string& out) {
  if (atEnd()) {
    return fail(fAt - 1, "a string without an end");
  }
  const char c = fText[fAt];
  if (c == 'U' || c == 'u') {
    return unicode(out);
  }
  if (c >= '0' && c <= '7') {
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
  constexpr std::string_view kNames = "abfnrtv";
  constexpr std::string_view kMeanings = "\a\b\f\n\r\t\v";
  const std::size_t known = kNames.find(c);
  out.push_back(known == std::string_view::npos ? c : kMeanings[known]);
  ++fAt;
  return true;
}

// An escaped UTF-16 unit, and the escaped second half when it is the first half of a pair.
bool Reader::unicode(std::string& out) {
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
bool Reader::unicodeUnit(char32_t& unit) {
  const std::size_t start = fAt++;
  for (std::size_t i = 0; i < 4 && !atEnd() && hexDigit(fText[fAt]) != kNoDigit; ++i) {
    unit = unit << 4U | static_cast<char32_t>(hexDigit(fText[fAt++]));
  }
  return fAt > start + 1 || fail(start - 1, "a Unicode escape without digits");
}

}  // namespace

Result<Value> readText(std::string_view utf8) {
  return Reader(utf8).run();
}

}  // namespace veltrix::plist
