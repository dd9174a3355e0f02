#include "platform/key_file.h"

namespace veltrix {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool isHeadOf(std::string_view line, std::string_view group) {
  return line.size() == group.size() + 2 && line.ends_with(']') && line.substr(1, group.size()) == group;
}

}  // namespace

void readKeyFileGroup(std::string_view bytes, std::string_view group,
                      const std::function<void(std::string_view key, std::string_view value)>& take) {
  bool inGroup = false;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    const std::string_view line = trimmed(bytes.substr(0, end));
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    const std::size_t equals = line.find('=');
    if (line.starts_with('[')) {
      inGroup = isHeadOf(line, group);
    } else if (inGroup && !line.starts_with('#') && equals != std::string_view::npos) {
      take(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }
  }
}

}  // namespace veltrix
