#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/keyboard_layout.h"

// Tables that tell which key and which modifiers type a character under the current layout. A pair of tables
// is 256 bytes each, indexed by a character in Mac OS Roman: the virtual key code (255 for none) and the
// modifier byte, a mask of settings/modifier_mask.h shifted right by kModifierByteShift. On the main thread
// only.
//
// The functions whose names begin with capitals keep one sequence of dead keys through all the keys they try;
// docs/keyboard.md says what that does and why whoever types text uses fillTypingTables instead.

inline constexpr std::size_t kCharacters = 256;

// Makes the tables and fills them. The caller owns both; they are not made when an argument is null, and stay
// made when there is no layout, with nothing of use in them. 1 when done, else 0.
std::int16_t SetupKeyTables(std::unique_ptr<std::uint8_t[]>* keys,
                            std::unique_ptr<std::uint8_t[]>* modifiers);
std::int16_t SetupKeyTablesNumPad(std::unique_ptr<std::uint8_t[]>* keys,
                                  std::unique_ptr<std::uint8_t[]>* modifiers, std::int16_t preferKeypad);

// Fills tables of the caller. 1 when done; 0, and the tables as they were, when one is null or there is no
// layout.
std::int16_t UpdateKeyTables(std::uint8_t* keys, std::uint8_t* modifiers);
std::int16_t UpdateKeyTablesNumPad(std::uint8_t* keys, std::uint8_t* modifiers, std::int16_t preferKeypad);

// Whether a new way to type a character should replace the old one: Escape replaces the keypad's Clear; with
// `preferKeypad` not 0 a key of the keypad wins; then a key outside of the keypad's codes; then the modifiers
// that are easier to hold. Of equals the old one stays.
bool IsBetterKeystroke(std::uint8_t newKey, std::uint8_t newModifiers, std::uint8_t oldKey,
                       std::uint8_t oldModifiers, std::int16_t preferKeypad);

// The key's code in the high byte and the character in the low one.
std::uint16_t GetCharMessage(const std::uint8_t* keys, std::uint8_t character);

// The mask of the modifiers to hold.
std::uint16_t GetCharModifiers(const std::uint8_t* modifiers, std::uint8_t character);

namespace veltrix {

// Tables for typing text on `layout`: each entry holds for a key pressed on its own, so dead keys compose
// nothing, and only characters that the key really types are entered, neither 0 nor the substitute for
// others.
void fillTypingTables(const KeyboardLayout& layout, std::uint8_t* keys, std::uint8_t* modifiers,
                      bool preferKeypad);

}  // namespace veltrix
