#include "platform/layout_names.h"

#include <algorithm>
#include <cstdlib>

namespace veltrix {
namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// The value of an assignment: between quotes when it begins with one, else up to a blank or a comment.
std::string_view shellValue(std::string_view text) {
  if (!text.empty() && (text.front() == '"' || text.front() == '\'')) {
    const auto end = text.find(text.front(), 1);
    return end == std::string_view::npos ? std::string_view() : text.substr(1, end - 1);
  }
  return text.substr(0, text.find_first_of(" \t\r#;"));
}

std::string* fieldOf(LayoutNames& names, std::string_view key) {
  if (key == "XKBMODEL") {
    return &names.model;
  }
  if (key == "XKBLAYOUT") {
    return &names.layout;
  }
  if (key == "XKBVARIANT") {
    return &names.variant;
  }
  return key == "XKBOPTIONS" ? &names.options : nullptr;
}

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

// A name of the keyboard data. It becomes part of a file's name, so nothing else may stand in it.
bool isName(std::string_view text) {
  return !text.empty() && text.front() != '-' && std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
  });
}

}  // namespace

std::optional<LayoutNames> readLayoutNames(std::string_view text) {
  LayoutNames names;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    const std::string_view line = trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) {
      continue;
    }
    if (auto* field = fieldOf(names, line.substr(0, equals))) {
      *field = shellValue(line.substr(equals + 1));
    }
  }
  return names.layout.empty() ? std::nullopt : std::optional(names);
}

std::optional<LayoutNames> layoutNamesOfEnvironment() {
  LayoutNames names{variable("XKB_DEFAULT_MODEL"), variable("XKB_DEFAULT_LAYOUT"),
                    variable("XKB_DEFAULT_VARIANT"), variable("XKB_DEFAULT_OPTIONS")};
  return names.layout.empty() ? std::nullopt : std::optional(names);
}

std::optional<LayoutNames> parseLayoutName(std::string_view text) {
  LayoutNames names;
  auto separator = text.find(':');
  std::string_view variant;
  if (separator != std::string_view::npos) {
    variant = text.substr(separator + 1);
  } else if (separator = text.find('('); separator != std::string_view::npos && text.back() == ')') {
    variant = text.substr(separator + 1, text.size() - separator - 2);
  } else {
    separator = text.size();
  }
  names.layout = text.substr(0, separator);
  names.variant = variant;
  if (!isName(names.layout) || (separator != text.size() && !isName(names.variant))) {
    return std::nullopt;
  }
  return names;
}

}  // namespace veltrix
