#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// The decisions that an input makes, one byte after the other; zeros when it has no more.
class ByteSource {
 public:
  explicit ByteSource(std::string_view bytes) : fBytes(bytes) {}

  bool isAtEnd() const { return fBytes.empty(); }

  std::uint8_t byte() {
    if (fBytes.empty()) {
      return 0;
    }
    const auto first = static_cast<std::uint8_t>(fBytes.front());
    fBytes.remove_prefix(1);
    return first;
  }

  // Below `end`, which is at most 256; 0 when there is nothing to choose from.
  std::size_t below(std::size_t end) { return end == 0 ? 0 : byte() % end; }

  std::uint16_t word() {
    const unsigned low = byte();
    return static_cast<std::uint16_t>(low | static_cast<unsigned>(byte()) << 8U);
  }

  // The next bytes, fewer when there are not so many.
  std::string_view take(std::size_t count) {
    const std::string_view taken = fBytes.substr(0, count);
    fBytes.remove_prefix(taken.size());
    return taken;
  }

  std::string_view rest() const { return fBytes; }

 private:
  std::string_view fBytes;
};
