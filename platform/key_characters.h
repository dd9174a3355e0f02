#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <optional>

// The control characters by which key tables know keys that type nothing, and the other fixed characters.
namespace veltrix::xkb {

// The character of a key that has a name by its keysym (arrows, page up, return …) or its place (function
// keys, the higher of which have all sorts of keysyms); nothing for others.
std::optional<char16_t> characterOfNamedKey(std::uint32_t evdevCode, xkb_keysym_t keysym);

// The character of a keysym on the keypad, with or without Num Lock; nothing for others.
std::optional<char16_t> characterOfKeypad(xkb_keysym_t keysym);

// Whether the key of an evdev code lies on the keypad.
bool isOnKeypad(std::uint32_t evdevCode);

// What Control makes of a character: letters and their neighbours give control characters, some digits too.
char32_t controlCharacterOf(char32_t character);

}  // namespace veltrix::xkb
