#include "helper/desktop/url_check.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>

#include "helper/desktop/one_line.h"
#include "util/phrase.h"

namespace veltrix {

namespace {

constexpr std::array<std::string_view, 4> kRefusedSchemes = {"file", "javascript", "data", "vbscript"};

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool belongsToScheme(char character) {
  return isLetter(character) || (character >= '0' && character <= '9') || character == '+' ||
         character == '-' || character == '.';
}

bool isScheme(std::string_view text) {
  return !text.empty() && isLetter(text.front()) && std::all_of(text.begin(), text.end(), belongsToScheme);
}

std::string lowered(std::string_view scheme) {
  std::string small(scheme);
  for (char& character : small) {
    character = static_cast<char>(character >= 'A' && character <= 'Z' ? character - 'A' + 'a' : character);
  }
  return small;
}

Status refused(const char* text, std::string_view argument) {
  return phrasedError(EINVAL, {text, {given(oneLine(argument))}});
}

}  // namespace

Status checkUrl(std::string_view url) {
  if (url.empty()) {
    return Error{EINVAL, "the address is empty", {}};
  }
  if (url.size() > kLongestUrl) {
    return refused("the address is longer than %1 bytes", std::to_string(kLongestUrl));
  }
  const auto isBlankOrControl = [](char character) {
    return (character >= '\0' && character <= ' ') || character == '\x7F';
  };
  if (std::any_of(url.begin(), url.end(), isBlankOrControl)) {
    return refused("the address has a blank or a control character: %1", url);
  }
  const std::size_t colon = url.find(':');
  const std::string_view scheme = url.substr(0, colon);
  if (colon == std::string_view::npos || colon + 1 == url.size() || !isScheme(scheme)) {
    return refused("the address has no scheme, as https: is one: %1", url);
  }
  const std::string known = lowered(scheme);
  if (std::find(kRefusedSchemes.begin(), kRefusedSchemes.end(), known) != kRefusedSchemes.end()) {
    return refused("the address has the scheme %1, which a button may not open", known);
  }
  return Done();
}

}  // namespace veltrix
