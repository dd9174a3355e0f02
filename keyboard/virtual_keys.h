#pragma once

#include <linux/input-event-codes.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

// Virtual key codes, which settings and records carry, and the evdev codes of the same keys. A key is a place
// on the keyboard, whatever the layout makes of it. Constants only: everybody down to the driver may use
// them.
namespace veltrix {

inline constexpr std::uint8_t kNoVirtualKey = 255;  // in settings: no key
inline constexpr std::size_t kVirtualKeys = 128;    // codes are below this

struct VirtualKey {
  std::uint8_t code;
  std::uint16_t evdevCode;
};

// In the order of virtual key codes, no code and no evdev code twice; docs/keyboard.md tells of the keys that
// differ between makes of keyboards (10 and 50, 71, 114, 102 and 104) and of 52, 108 and 112.
inline constexpr auto kVirtualKeyTable = std::to_array<VirtualKey>({
    // clang-format off
    {0, KEY_A}, {1, KEY_S}, {2, KEY_D}, {3, KEY_F}, {4, KEY_H}, {5, KEY_G}, {6, KEY_Z}, {7, KEY_X},
    {8, KEY_C}, {9, KEY_V}, {10, KEY_102ND}, {11, KEY_B}, {12, KEY_Q}, {13, KEY_W}, {14, KEY_E},
    {15, KEY_R}, {16, KEY_Y}, {17, KEY_T}, {18, KEY_1}, {19, KEY_2}, {20, KEY_3}, {21, KEY_4}, {22, KEY_6},
    {23, KEY_5}, {24, KEY_EQUAL}, {25, KEY_9}, {26, KEY_7}, {27, KEY_MINUS}, {28, KEY_8}, {29, KEY_0},
    {30, KEY_RIGHTBRACE}, {31, KEY_O}, {32, KEY_U}, {33, KEY_LEFTBRACE}, {34, KEY_I}, {35, KEY_P},
    {36, KEY_ENTER}, {37, KEY_L}, {38, KEY_J}, {39, KEY_APOSTROPHE}, {40, KEY_K}, {41, KEY_SEMICOLON},
    {42, KEY_BACKSLASH}, {43, KEY_COMMA}, {44, KEY_SLASH}, {45, KEY_N}, {46, KEY_M}, {47, KEY_DOT},
    {48, KEY_TAB}, {49, KEY_SPACE}, {50, KEY_GRAVE}, {51, KEY_BACKSPACE}, {52, KEY_SYSRQ}, {53, KEY_ESC},
    {54, KEY_RIGHTMETA}, {55, KEY_LEFTMETA}, {56, KEY_LEFTSHIFT}, {57, KEY_CAPSLOCK}, {58, KEY_LEFTALT},
    {59, KEY_LEFTCTRL}, {60, KEY_RIGHTSHIFT}, {61, KEY_RIGHTALT}, {62, KEY_RIGHTCTRL}, {63, KEY_FN},
    {64, KEY_F17}, {65, KEY_KPDOT}, {67, KEY_KPASTERISK}, {69, KEY_KPPLUS}, {71, KEY_NUMLOCK},
    {72, KEY_VOLUMEUP}, {73, KEY_VOLUMEDOWN}, {74, KEY_MUTE}, {75, KEY_KPSLASH}, {76, KEY_KPENTER},
    {78, KEY_KPMINUS}, {79, KEY_F18}, {80, KEY_F19}, {81, KEY_KPEQUAL}, {82, KEY_KP0}, {83, KEY_KP1},
    {84, KEY_KP2}, {85, KEY_KP3}, {86, KEY_KP4}, {87, KEY_KP5}, {88, KEY_KP6}, {89, KEY_KP7}, {90, KEY_F20},
    {91, KEY_KP8}, {92, KEY_KP9}, {93, KEY_YEN}, {94, KEY_RO}, {95, KEY_KPCOMMA}, {96, KEY_F5},
    {97, KEY_F6}, {98, KEY_F7}, {99, KEY_F3}, {100, KEY_F8}, {101, KEY_F9}, {102, KEY_HANJA},
    {103, KEY_F11}, {104, KEY_HANGEUL}, {105, KEY_F13}, {106, KEY_F16}, {107, KEY_F14},
    {108, KEY_SCROLLLOCK}, {109, KEY_F10}, {110, KEY_COMPOSE}, {111, KEY_F12}, {112, KEY_PAUSE},
    {113, KEY_F15}, {114, KEY_INSERT}, {115, KEY_HOME}, {116, KEY_PAGEUP}, {117, KEY_DELETE}, {118, KEY_F4},
    {119, KEY_END}, {120, KEY_F2}, {121, KEY_PAGEDOWN}, {122, KEY_F1}, {123, KEY_LEFT}, {124, KEY_RIGHT},
    {125, KEY_DOWN}, {126, KEY_UP},
    // clang-format on
});

// Keys that rules speak of.
inline constexpr std::uint8_t kVirtualKeypadClear = 71;
inline constexpr std::uint8_t kVirtualEscape = 53;
inline constexpr std::uint8_t kVirtualApplication = 110;

namespace virtual_keys {

inline constexpr std::size_t kEvdevCodes = 512;

constexpr std::array<std::uint16_t, kVirtualKeys> evdevByVirtual() {
  std::array<std::uint16_t, kVirtualKeys> codes{};
  for (const auto& key : kVirtualKeyTable) {
    codes[key.code] = key.evdevCode;
  }
  return codes;
}

constexpr std::array<std::uint8_t, kEvdevCodes> virtualByEvdev() {
  std::array<std::uint8_t, kEvdevCodes> codes{};
  codes.fill(kNoVirtualKey);
  for (const auto& key : kVirtualKeyTable) {
    codes[key.evdevCode] = key.code;
  }
  return codes;
}

inline constexpr auto kEvdevByVirtual = evdevByVirtual();
inline constexpr auto kVirtualByEvdev = virtualByEvdev();

}  // namespace virtual_keys

// The evdev code of a key; nothing for a code that no key has.
constexpr std::optional<std::uint16_t> evdevCodeOf(std::uint16_t virtualKey) {
  if (virtualKey >= kVirtualKeys || virtual_keys::kEvdevByVirtual[virtualKey] == KEY_RESERVED) {
    return std::nullopt;
  }
  return virtual_keys::kEvdevByVirtual[virtualKey];
}

// The virtual key code of a key; nothing for a key that has none, such as a media key.
constexpr std::optional<std::uint8_t> virtualKeyOf(std::uint32_t evdevCode) {
  if (evdevCode >= virtual_keys::kEvdevCodes || virtual_keys::kVirtualByEvdev[evdevCode] == kNoVirtualKey) {
    return std::nullopt;
  }
  return virtual_keys::kVirtualByEvdev[evdevCode];
}

namespace virtual_keys {

// Each code leads to its key and back, which no code or evdev code that stands twice would do.
constexpr bool isOneToOne() {
  for (const auto& key : kVirtualKeyTable) {
    if (key.code >= kVirtualKeys || key.evdevCode == KEY_RESERVED || key.evdevCode >= kEvdevCodes ||
        evdevCodeOf(key.code) != key.evdevCode || virtualKeyOf(key.evdevCode) != key.code) {
      return false;
    }
  }
  return true;
}
static_assert(isOneToOne());

}  // namespace virtual_keys

}  // namespace veltrix
