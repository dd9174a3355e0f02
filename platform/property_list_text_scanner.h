#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/property_list.h"
#include "util/result.h"

namespace veltrix::plist {

// Takes the words of the old text form from the start of a text to its end: blanks, comments, marks, strings,
// data. What returns false has left the reason in error(), except where it only says what comes next.
class TextScanner {
 public:
  // The text is UTF-8 and outlives the scanner.
  explicit TextScanner(std::string_view text) : fText(text) {}

  std::size_t at() const { return fAt; }
  void goBackTo(std::size_t at) { fAt = at; }  // a place that at() has told
  bool atEnd() const { return fAt >= fText.size(); }
  bool startsWith(std::string_view start) const { return fText.substr(fAt, start.size()) == start; }

  // Takes the character when it is next.
  bool next(char c);

  // Passes over blanks and comments; false for a comment without an end.
  bool skip();

  // Appends a quoted string or a bare word to `out`.
  bool string(std::string& out);

  // Appends what stands in hexadecimal digits between '<', which is next, and '>'.
  bool data(Data& out);

  // Keeps why the text cannot be read; returns false.
  bool fail(std::size_t offset, std::string message);
  const std::optional<Error>& error() const { return fError; }

 private:
  bool quoted(std::string& out);
  bool escape(std::string& out);
  bool octal(std::string& out);
  bool unicode(std::string& out);
  bool unicodeUnit(char32_t& unit);

  std::string_view fText;
  std::size_t fAt = 0;
  std::optional<Error> fError;
};

}  // namespace veltrix::plist
