#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/xkb_handles.h"

namespace veltrix {

// What is held around a key; bits of a set.
inline constexpr std::uint8_t kHeldControl = 0x01;
inline constexpr std::uint8_t kHeldAlt = 0x02;
inline constexpr std::uint8_t kHeldSuper = 0x04;
inline constexpr std::uint8_t kHeldShift = 0x08;
inline constexpr std::uint8_t kHeldThirdLevel = 0x10;
inline constexpr std::uint8_t kHeldFifthLevel = 0x20;
inline constexpr std::size_t kHeldKinds = 6;

// The keys of a keyboard: what the kernel counts and every display server understands.
inline constexpr std::uint16_t kFirstKey = 1;
inline constexpr std::uint16_t kLastKey = 247;

// Evdev codes in the order in which they go down, up to the first 0.
using HeldKeys = std::array<std::uint16_t, kHeldKinds>;

// A state of the keymap with nothing held, that group in effect and those modifiers locked.
xkb::State stateOfGroup(xkb_keymap* keymap, xkb_layout_index_t group, xkb_mod_mask_t locked);

// Presses the keys in their order, or releases them in the opposite one.
void pressKeys(xkb_state* state, const HeldKeys& keys);
void releaseKeys(xkb_state* state, const HeldKeys& keys);

// The modifier keys of one group of a keymap while modifiers are locked: those that are Shift and so on
// there, wherever they lie.
class ModifierKeys {
 public:
  // The keymap must outlive the object.
  ModifierKeys(xkb_keymap* keymap, xkb_layout_index_t group, xkb_mod_mask_t locked);

  struct Hold {
    HeldKeys keys{};
    bool clean = true;  // once they are up again all is as before: the same locks and group
  };

  // The keys that hold a set; a clean way when there is one. Nothing when the keymap lacks one of them.
  std::optional<Hold> toHold(std::uint8_t set) const;

 private:
  struct Candidate {
    std::uint16_t code;
    xkb_mod_mask_t modifiers;  // that it sets; 0 for one that chooses a group
  };

  std::vector<Candidate> candidatesFor(std::span<const xkb_keysym_t> keysyms) const;
  bool isClean(const HeldKeys& keys, xkb_mod_mask_t modifiers) const;

  xkb_keymap* fKeymap;
  xkb_layout_index_t fGroup;
  xkb_mod_mask_t fLocked;
  std::array<std::vector<Candidate>, kHeldKinds> fCandidates;  // the best first, by bit
};

}  // namespace veltrix
