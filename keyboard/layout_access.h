#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/keyboard_layout.h"

// The keyboard layout by which keys are named and tables filled. Key codes are virtual key codes, modifier
// masks those of settings/modifier_mask.h. On the main thread only.

// Gives the layout in effect in `layout`; it stays valid until the next call. There are no layouts of an
// older kind: `legacyLayout` always becomes null. 0 when done; -50 when an argument is null; -192, and null
// in both, when there is no layout.
std::int32_t CompatibleGetKeyboardLayout(const veltrix::KeyboardLayout** layout, const void** legacyLayout);

// The character (Mac OS Roman, '?' for one that it does not have) that a key types with these modifiers; 0
// for none, for a failure and without a layout. `legacyLayout` is passed over. `deadKeyState` is the sequence
// of dead keys so far and becomes the one after it; null for a key on its own.
std::uint8_t CompatibleKeyTranslate(std::uint8_t keyCode, std::uint16_t modifiers,
                                    const veltrix::KeyboardLayout* layout, const void* legacyLayout,
                                    std::uint32_t* deadKeyState);

namespace veltrix {

using KeyboardLayoutSource = std::function<std::shared_ptr<const KeyboardLayout>()>;

// Where CompatibleGetKeyboardLayout takes the layout from, asked at each call; null from it means that there
// is none. An empty one stands for the layout of the desktop.
void setKeyboardLayoutSource(KeyboardLayoutSource source);

// What CompatibleKeyTranslate translates, before it becomes a byte: one UTF-16 unit, 0 for none, nothing for
// a failure. `modifierByte` is a mask shifted right by kModifierByteShift.
std::optional<char16_t> translateVirtualKey(const KeyboardLayout& layout, std::uint8_t keyCode,
                                            std::uint8_t modifierByte, std::uint32_t& deadKeyState);

}  // namespace veltrix
