#pragma once

#include <bit>
#include <cstdint>
#include <map>
#include <string>

namespace veltrix::testing {

// The bytes of a compiled gettext catalogue, in this machine's byte order or in the other one.
inline std::string catalogBytes(std::map<std::string, std::string> texts, bool swapped = false) {
  texts[""] = "Content-Type: text/plain; charset=UTF-8\n";
  std::string head;
  const auto put = [&](std::size_t number) {
    auto value = static_cast<std::uint32_t>(number);
    value = swapped ? __builtin_bswap32(value) : value;
    head.append(reinterpret_cast<const char*>(&value), sizeof value);
  };
  constexpr std::size_t kHeadBytes = 28;
  const std::size_t tableBytes = texts.size() * 8;
  for (const std::size_t number : {std::size_t{0x950412DE}, std::size_t{0}, texts.size(), kHeadBytes,
                                   kHeadBytes + tableBytes, std::size_t{0}, kHeadBytes + 2 * tableBytes}) {
    put(number);
  }
  std::string strings;
  const auto putRow = [&](const std::string& text) {
    put(text.size());
    put(kHeadBytes + 2 * tableBytes + strings.size());
    strings += text + '\0';
  };
  for (const auto& [key, text] : texts) {
    putRow(key);
  }
  for (const auto& [key, text] : texts) {
    putRow(text);
  }
  return head + strings;
}

}  // namespace veltrix::testing
