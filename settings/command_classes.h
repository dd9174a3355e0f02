#pragma once

#include <cstdint>

// What the command codes of actions have in common. Codes are the low 16 bits of the stored number.
namespace veltrix {

inline constexpr std::uint16_t kPrimaryClickCommand = 1;
inline constexpr std::uint16_t kKeystrokeCommand = 10;
inline constexpr std::uint16_t kScrollCommand = 20;  // what the wheel or ring always carries
inline constexpr std::uint16_t kOpenItemCommand = 70;
inline constexpr std::uint16_t kLaunchApplicationCommand = 71;
inline constexpr std::uint16_t kOpenUrlCommand = 72;
inline constexpr std::uint16_t kRunScriptCommand = 73;
inline constexpr std::uint16_t kFirstSnippetCommand = 180;
inline constexpr std::uint16_t kLastSnippetCommand = 189;
inline constexpr std::uint16_t kFallbackCommand = 200;  // the same button's action in the fallback entry

inline constexpr std::uint16_t kNoKeyCode = 255;

// Bit n stands for code n; codes from 24 on belong to neither class.
inline constexpr std::uint32_t kClickCommands = 0x7F1FE;
inline constexpr std::uint32_t kScrollCommands = 0xF00000;

constexpr bool commandIsIn(std::uint32_t commandClass, std::uint16_t command) {
  return command < 24 && ((commandClass >> command) & 1U) != 0;
}

constexpr bool isClickCommand(std::uint16_t command) {
  return commandIsIn(kClickCommands, command);
}
constexpr bool isScrollCommand(std::uint16_t command) {
  return commandIsIn(kScrollCommands, command);
}

}  // namespace veltrix
