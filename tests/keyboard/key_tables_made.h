#pragma once

// The tables of keys and modifiers, made for a test, and the bits of their modifiers.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>

#include "keyboard/key_tables.h"

namespace veltrix {

inline constexpr std::uint8_t kNone = 255;
inline constexpr std::uint8_t kCommand = 0x01;
inline constexpr std::uint8_t kShift = 0x02;
inline constexpr std::uint8_t kCapsLock = 0x04;
inline constexpr std::uint8_t kOption = 0x08;
inline constexpr std::uint8_t kControl = 0x10;

struct Tables {
  std::array<std::uint8_t, kCharacters> keys{};
  std::array<std::uint8_t, kCharacters> modifiers{};
};

inline Tables namedTables(std::int16_t preferKeypad = 0) {
  Tables tables;
  EXPECT_EQ(UpdateKeyTablesNumPad(tables.keys.data(), tables.modifiers.data(), preferKeypad), 1);
  return tables;
}

inline Tables typingTables(const KeyboardLayout& layout, bool preferKeypad = false) {
  Tables tables;
  fillTypingTables(layout, tables.keys.data(), tables.modifiers.data(), preferKeypad);
  return tables;
}

}  // namespace veltrix
