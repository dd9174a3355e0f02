#include "helper/desktop/url_check.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>

#include "helper/desktop/one_line.h"

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

Status refused(const std::string& why) {
  return Error{EINVAL, "the address " + why, {}};
}

}  // namespace

Status checkUrl(std::string_view url) {
  if (url.empty()) {
    return refused("is empty");
  }
  if (url.size() > kLongestUrl) {
    return refused("is longer than " + std::to_string(kLongestUrl) + " bytes");
  }
  const auto isBlankOrControl = [](char character) {
    return (character >= '\0' && character <= ' ') || character == '\x7F';
  };
  if (std::any_of(url.begin(), url.end(), isBlankOrControl)) {
    return refused("has a blank or a control character: " + oneLine(url));
  }
  const std::size_t colon = url.find(':');
  const std::string_view scheme = url.substr(0, colon);
  if (colon == std::string_view::npos || colon + 1 == url.size() || !isScheme(scheme)) {
    return refused("has no scheme, as https: is one: " + oneLine(url));
  }
  const std::string known = lowered(scheme);
  if (std::find(kRefusedSchemes.begin(), kRefusedSchemes.end(), known) != kRefusedSchemes.end()) {
    return refused("has the scheme " + known + ", which a button may not open");
  }
  return Done();
}

}  // namespace veltrix
