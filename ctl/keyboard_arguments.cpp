#include "ctl/keyboard_arguments.h"

#include <charconv>
#include <memory>
#include <utility>

#include "keyboard/layout_access.h"

namespace veltrix::ctl {

std::optional<std::uint32_t> parseNumber(std::string_view text, std::uint32_t most) {
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
    base = 16;
  }
  std::uint32_t number = 0;
  const auto* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || stop != end || number > most) {
    return std::nullopt;
  }
  return number;
}

Status useLayout(const std::string& name) {
  auto layout = name.empty() ? KeyboardLayout::current() : KeyboardLayout::named(name);
  if (!layout) {
    return layout.error();
  }
  setKeyboardLayoutSource(
      [kept = std::make_shared<const KeyboardLayout>(std::move(layout.value()))] { return kept; });
  return Done{};
}

}  // namespace veltrix::ctl
