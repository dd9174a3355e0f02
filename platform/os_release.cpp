#include "platform/os_release.h"

#include <charconv>
#include <fstream>
#include <iterator>
#include <limits>

namespace veltrix {

namespace {

constexpr std::string_view kKey = "VERSION_ID=";
constexpr std::streamsize kMostBytes = 65536;  // nobody's file is a tenth of that

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

// The value as a shell would read it: quotes vanish, a backslash keeps what follows it (between single quotes
// it is a character like others).
std::string unquoted(std::string_view value) {
  std::string text;
  char quote = 0;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const char character = value[i];
    if (character == '\\' && quote != '\'' && i + 1 < value.size()) {
      text += value[++i];
    } else if (quote == 0 ? character == '"' || character == '\'' : character == quote) {
      quote = quote == 0 ? character : '\0';
    } else {
      text += character;
    }
  }
  return text;
}

// The number at the beginning of `text`, which then begins behind the dot after it, or is empty.
std::int32_t takePart(std::string_view* text) {
  std::size_t digits = 0;
  while (digits < text->size() && isDigit((*text)[digits])) {
    ++digits;
  }
  std::int32_t number = 0;
  const auto parsed = std::from_chars(text->data(), text->data() + digits, number);
  if (parsed.ec == std::errc::result_out_of_range) {
    number = std::numeric_limits<std::int32_t>::max();
  }
  const bool goesOn = digits < text->size() && (*text)[digits] == '.';
  text->remove_prefix(goesOn ? digits + 1 : text->size());
  return number;
}

OsRelease releaseOf(std::string_view version) {
  OsRelease release;
  release.major = takePart(&version);
  release.minor = takePart(&version);
  release.bugFix = takePart(&version);
  return release;
}

std::string_view withoutBlanks(std::string_view line) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = line.find_first_not_of(kBlanks);
  return first == std::string_view::npos ? std::string_view()
                                         : line.substr(first, line.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

OsRelease parseOsRelease(std::string_view bytes) {
  OsRelease release;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    const std::string_view line = withoutBlanks(bytes.substr(0, end));
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    if (line.starts_with(kKey)) {
      release = releaseOf(unquoted(line.substr(kKey.size())));
    }
  }
  return release;
}

OsRelease readOsRelease(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes(kMostBytes, '\0');
    file.read(bytes.data(), kMostBytes);
    // A folder can be opened, but gives nothing.
    if (file.gcount() > 0) {
      return parseOsRelease(std::string_view(bytes).substr(0, static_cast<std::size_t>(file.gcount())));
    }
  }
  return {};
}

}  // namespace veltrix
