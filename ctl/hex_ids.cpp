#include "ctl/hex_ids.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace veltrix::ctl {

std::optional<std::uint16_t> parseHexId(std::string_view text) {
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
  }
  std::uint16_t id = 0;
  const char* end = text.data() + text.size();
  const auto [stop, problem] = std::from_chars(text.data(), end, id, 16);
  if (text.empty() || text.size() > 4 || stop != end || problem != std::errc()) {
    return std::nullopt;
  }
  return id;
}

std::optional<DeviceIds> parseDeviceIds(std::string_view text) {
  const std::size_t first = text.find(':');
  const std::size_t second = first == std::string_view::npos ? first : text.find(':', first + 1);
  if (second == std::string_view::npos) {
    return std::nullopt;
  }
  const auto vendor = parseHexId(text.substr(0, first));
  const auto product = parseHexId(text.substr(first + 1, second - first - 1));
  const auto version = parseHexId(text.substr(second + 1));
  if (!vendor || !product || !version) {
    return std::nullopt;
  }
  return DeviceIds{*vendor, *product, *version};
}

std::string hexId(std::uint16_t id) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "%04X", static_cast<unsigned>(id));
  return text.data();
}

std::string deviceIdsText(const DeviceIds& ids) {
  return hexId(ids.vendor) + ":" + hexId(ids.product) + ":" + hexId(ids.version);
}

std::string versionText(std::uint16_t version) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%d.%02d", version >> 8, version & 0xFF);
  return text.data();
}

std::string hexBytes(std::span<const unsigned char> bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const unsigned char byte : bytes) {
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0x0FU];
  }
  return text;
}

}  // namespace veltrix::ctl
