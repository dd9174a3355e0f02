#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "driver/engine/output.h"

// What the engine gave, in words that a test can compare: a text for each group, "+272" for code 272 down,
// "-272" for up, "0:5" for REL code 0 by 5.
namespace veltrix::test {

inline std::string down(std::uint16_t code) {
  return "+" + std::to_string(code);
}

inline std::string up(std::uint16_t code) {
  return "-" + std::to_string(code);
}

inline std::string by(std::uint16_t code, std::int32_t value) {
  return std::to_string(code) + ":" + std::to_string(value);
}

// Several events of one group.
template <class... More>
std::string together(const std::string& first, const More&... more) {
  return ((first + " ") + ... + (more + " ")).substr(0, (first.size() + ... + (more.size() + 1)));
}

inline std::string textOf(const OutputEvent& event) {
  return event.type == EV_REL ? by(event.code, event.value)
                              : (event.value != 0 ? down(event.code) : up(event.code));
}

inline std::vector<std::string> groupsOf(const Output& output) {
  std::vector<std::string> groups;
  std::string group;
  for (const OutputEvent& event : output.events()) {
    if (event.type == EV_SYN) {
      groups.push_back(group);
      group.clear();
    } else {
      group += (group.empty() ? "" : " ") + textOf(event);
    }
  }
  if (!group.empty())
    groups.push_back("open: " + group);
  return groups;
}

}  // namespace veltrix::test
