#include "platform/base64.h"

#include <array>
#include <cstdint>

namespace veltrix {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kBlank = 64;
constexpr std::uint8_t kForeign = 65;

constexpr std::array<std::uint8_t, 256> makeValues() {
  std::array<std::uint8_t, 256> values{};
  for (std::uint8_t& value : values) {
    value = kForeign;
  }
  for (const char c : std::string_view(" \t\r\n")) {
    values[static_cast<unsigned char>(c)] = kBlank;
  }
  for (std::size_t i = 0; i < kAlphabet.size(); ++i) {
    values[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::uint8_t>(i);
  }
  return values;
}

constexpr std::array<std::uint8_t, 256> kValues = makeValues();

// Whether `text`, the rest from the first '=' on, closes a group of which `digits` (0 to 3) are there.
bool isPadding(std::string_view text, std::size_t digits) {
  std::size_t padding = 0;
  for (const char c : text) {
    if (c == '=') {
      ++padding;
    } else if (kValues[static_cast<unsigned char>(c)] != kBlank) {
      return false;
    }
  }
  return digits >= 2 && padding == 4 - digits;
}

}  // namespace

std::string base64Encoded(const std::vector<std::byte>& data) {
  std::string out;
  out.reserve((data.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < data.size(); at += 3) {
    const std::size_t have = data.size() - at < 3 ? data.size() - at : 3;
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      group = group << 8U | (i < have ? std::to_integer<std::uint32_t>(data[at + i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      out.push_back(i <= have ? kAlphabet[group >> (18 - 6 * i) & 63U] : '=');
    }
  }
  return out;
}

std::optional<std::vector<std::byte>> base64Decoded(std::string_view text) {
  std::vector<std::byte> out;
  out.reserve(text.size() / 4 * 3);
  std::uint32_t group = 0;
  std::size_t digits = 0;
  std::size_t at = 0;
  for (; at < text.size() && text[at] != '='; ++at) {
    const std::uint8_t value = kValues[static_cast<unsigned char>(text[at])];
    if (value == kForeign) {
      return std::nullopt;
    }
    if (value == kBlank) {
      continue;
    }
    group = group << 6U | value;
    if (++digits == 4) {
      out.push_back(static_cast<std::byte>(group >> 16U & 0xFFU));
      out.push_back(static_cast<std::byte>(group >> 8U & 0xFFU));
      out.push_back(static_cast<std::byte>(group & 0xFFU));
      group = 0;
      digits = 0;
    }
  }
  if (at == text.size() ? digits != 0 : !isPadding(text.substr(at), digits)) {
    return std::nullopt;
  }
  if (digits >= 2) {
    group <<= 6 * (4 - digits);
    out.push_back(static_cast<std::byte>(group >> 16U & 0xFFU));
    if (digits == 3) {
      out.push_back(static_cast<std::byte>(group >> 8U & 0xFFU));
    }
  }
  return out;
}

}  // namespace veltrix
