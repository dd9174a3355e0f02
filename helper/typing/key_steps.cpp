#include "helper/typing/key_steps.h"

#include <algorithm>

namespace veltrix {

namespace {

using Codes = std::vector<std::uint16_t>;

bool contains(const Codes& codes, std::uint16_t code) {
  return std::find(codes.begin(), codes.end(), code) != codes.end();
}

Codes modifiersOf(const KeyPress& press) {
  const auto* end = std::find(press.modifiers.begin(), press.modifiers.end(), 0);
  return {press.modifiers.begin(), end};
}

// Lets go of what is not wanted any more, the last one first, and presses what is.
void hold(const Codes& wanted, Codes& held, std::vector<KeyStep>& steps) {
  for (auto code = held.rbegin(); code != held.rend(); ++code) {
    if (!contains(wanted, *code))
      steps.push_back({*code, 0});
  }
  for (const std::uint16_t code : wanted) {
    if (!contains(held, code))
      steps.push_back({code, 1});
  }
  held = wanted;
}

}  // namespace

std::vector<std::uint16_t> keysOf(const KeyPress& press) {
  Codes keys = modifiersOf(press);
  if (press.code != 0)
    keys.push_back(press.code);
  return keys;
}

std::vector<KeyStep> stepsOf(std::span<const KeyPress> presses) {
  std::vector<KeyStep> steps;
  Codes held;
  for (const KeyPress& press : presses) {
    hold(modifiersOf(press), held, steps);
    if (press.code == 0)
      continue;
    steps.push_back({press.code, 1});
    steps.push_back({press.code, 0});
  }
  hold({}, held, steps);
  return steps;
}

}  // namespace veltrix
