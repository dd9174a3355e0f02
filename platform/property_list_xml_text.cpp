#include "platform/property_list_xml_text.h"

#include <charconv>
#include <system_error>

#include "platform/text_encoding.h"

namespace veltrix::plist {

namespace {

struct Named {
  std::string_view name;
  char character;
};

constexpr Named kNamed[] = {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};

// What stands between '#' and ';'.
std::optional<char32_t> numbered(std::string_view digits) {
  int base = 10;
  if (!digits.empty() && digits[0] == 'x') {
    base = 16;
    digits.remove_prefix(1);
  }
  std::uint32_t value = 0;
  const auto [end, status] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  if (status != std::errc() || end != digits.data() + digits.size()) {
    return std::nullopt;
  }
  if (value > 0x10FFFF || isSurrogate(value) || !isXmlCharacter(value)) {
    return std::nullopt;
  }
  return value;
}

// What stands between '&' and ';'.
std::optional<char32_t> referenced(std::string_view name) {
  if (!name.empty() && name[0] == '#') {
    return numbered(name.substr(1));
  }
  for (const Named& named : kNamed) {
    if (name == named.name) {
      return static_cast<char32_t>(named.character);
    }
  }
  return std::nullopt;
}

// The end of the run of bytes from `at` on that are plain ASCII and no control character but tab, line feed
// and carriage return.
std::size_t skipPlain(std::string_view text, std::size_t at) {
  while (at < text.size()) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte >= 0x80 || !isXmlCharacter(byte)) {
      break;
    }
    ++at;
  }
  return at;
}

}  // namespace

std::optional<std::size_t> firstBadXmlCharacter(std::string_view utf8) {
  std::size_t at = skipPlain(utf8, 0);
  while (at < utf8.size()) {
    const std::size_t start = at;
    const std::optional<char32_t> character = nextUtf8(utf8, at);
    if (!character || !isXmlCharacter(*character)) {
      return start;
    }
    at = skipPlain(utf8, at);
  }
  return std::nullopt;
}

std::optional<std::size_t> appendUnescaped(std::string_view raw, std::string& out) {
  std::size_t at = 0;
  while (true) {
    const std::size_t ampersand = raw.find('&', at);
    out.append(raw.substr(at, ampersand - at));
    if (ampersand == std::string_view::npos) {
      return std::nullopt;
    }
    const std::size_t end = raw.find(';', ampersand);
    if (end == std::string_view::npos) {
      return ampersand;
    }
    const std::optional<char32_t> character = referenced(raw.substr(ampersand + 1, end - ampersand - 1));
    if (!character) {
      return ampersand;
    }
    appendUtf8(out, *character);
    at = end + 1;
  }
}

void appendEscaped(std::string_view text, std::string& out) {
  std::size_t done = 0;
  while (true) {
    const std::size_t special = text.find_first_of("&<>\r", done);
    out.append(text.substr(done, special - done));
    if (special == std::string_view::npos) {
      return;
    }
    switch (text[special]) {
      case '&':
        out.append("&amp;");
        break;
      case '<':
        out.append("&lt;");
        break;
      case '>':
        out.append("&gt;");
        break;
      default:
        out.append("&#13;");
        break;
    }
    done = special + 1;
  }
}

}  // namespace veltrix::plist
