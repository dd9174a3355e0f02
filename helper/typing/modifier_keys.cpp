#include "helper/typing/modifier_keys.h"

#include <linux/input-event-codes.h>

#include <algorithm>

namespace veltrix {
namespace {

constexpr std::size_t kMostCandidates = 2;

struct Kind {
  std::uint8_t bit;
  std::array<xkb_keysym_t, 2> keysyms;  // the better one first
};

constexpr std::array<Kind, kHeldKinds> kKinds{{
    {kHeldControl, {XKB_KEY_Control_L, XKB_KEY_Control_R}},
    {kHeldAlt, {XKB_KEY_Alt_L, XKB_KEY_Alt_R}},
    {kHeldSuper, {XKB_KEY_Super_L, XKB_KEY_Super_R}},
    {kHeldShift, {XKB_KEY_Shift_L, XKB_KEY_Shift_R}},
    {kHeldThirdLevel, {XKB_KEY_ISO_Level3_Shift, XKB_KEY_Mode_switch}},
    {kHeldFifthLevel, {XKB_KEY_ISO_Level5_Shift, XKB_KEY_ISO_Level5_Shift}},
}};

// Keymaps give modifiers to some codes that no keyboard has, for the X server's own purposes.
bool isOnKeyboards(std::uint16_t code) {
  constexpr std::uint16_t kThirdLevelOnly = 84;
  return code != kThirdLevelOnly && (code <= KEY_F24 || code >= KEY_PLAYCD);
}

}  // namespace

xkb::State stateOfGroup(xkb_keymap* keymap, xkb_layout_index_t group, xkb_mod_mask_t locked) {
  xkb::State state(xkb_state_new(keymap));
  xkb_state_update_mask(state.get(), 0, 0, locked, 0, 0, group);
  return state;
}

void pressKeys(xkb_state* state, const HeldKeys& keys) {
  for (const auto code : keys) {
    if (code != 0) {
      xkb_state_update_key(state, xkb::keycodeOf(code), XKB_KEY_DOWN);
    }
  }
}

void releaseKeys(xkb_state* state, const HeldKeys& keys) {
  for (auto code = keys.rbegin(); code != keys.rend(); ++code) {
    if (*code != 0) {
      xkb_state_update_key(state, xkb::keycodeOf(*code), XKB_KEY_UP);
    }
  }
}

ModifierKeys::ModifierKeys(xkb_keymap* keymap, xkb_layout_index_t group, xkb_mod_mask_t locked)
    : fKeymap(keymap), fGroup(group), fLocked(locked) {
  for (std::size_t kind = 0; kind < kHeldKinds; ++kind) {
    fCandidates[kind] = candidatesFor(kKinds[kind].keysyms);
  }
}

std::vector<ModifierKeys::Candidate> ModifierKeys::candidatesFor(
    std::span<const xkb_keysym_t> keysyms) const {
  std::vector<Candidate> best;
  std::vector<Candidate> others;
  const auto plain = stateOfGroup(fKeymap, fGroup, fLocked);
  for (const auto keysym : keysyms) {
    for (std::uint16_t code = kFirstKey; code <= kLastKey; ++code) {
      if (xkb_state_key_get_one_sym(plain.get(), xkb::keycodeOf(code)) != keysym) {
        continue;
      }
      const auto state = stateOfGroup(fKeymap, fGroup, fLocked);
      xkb_state_update_key(state.get(), xkb::keycodeOf(code), XKB_KEY_DOWN);
      const auto modifiers = xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_DEPRESSED);
      if (modifiers != 0 || xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE) != fGroup) {
        (isOnKeyboards(code) ? best : others).push_back({code, modifiers});
      }
    }
  }
  best.insert(best.end(), others.begin(), others.end());
  best.resize(std::min(best.size(), kMostCandidates));
  return best;
}

bool ModifierKeys::isClean(const HeldKeys& keys, xkb_mod_mask_t modifiers) const {
  const auto state = stateOfGroup(fKeymap, fGroup, fLocked);
  pressKeys(state.get(), keys);
  const auto held = xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE);
  releaseKeys(state.get(), keys);
  return (held & modifiers) == modifiers &&
         xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE) == fLocked &&
         xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE) == fGroup;
}

// A keymap may give two modifiers together another meaning, such as Alt and Shift that switch the group. So
// every way is tried: the other key of a pair, another order.
std::optional<ModifierKeys::Hold> ModifierKeys::toHold(std::uint8_t set) const {
  std::vector<std::size_t> kinds;
  for (std::size_t kind = 0; kind < kHeldKinds; ++kind) {
    if ((set & kKinds[kind].bit) != 0) {
      if (fCandidates[kind].empty()) {
        return std::nullopt;
      }
      kinds.push_back(kind);
    }
  }
  std::optional<HeldKeys> likely;
  for (unsigned choice = 0; choice < 1U << kinds.size(); ++choice) {
    std::vector<std::size_t> order(kinds.size());
    for (std::size_t place = 0; place < order.size(); ++place) {
      order[place] = place;
    }
    do {
      HeldKeys keys{};
      xkb_mod_mask_t modifiers = 0;
      for (std::size_t place = 0; place < order.size(); ++place) {
        const auto& candidates = fCandidates[kinds[order[place]]];
        const auto& candidate = candidates[(choice >> order[place] & 1U) % candidates.size()];
        keys[place] = candidate.code;
        modifiers |= candidate.modifiers;
      }
      if (isClean(keys, modifiers)) {
        return Hold{keys, true};
      }
      if (!likely) {
        likely = keys;
      }
    } while (std::next_permutation(order.begin(), order.end()));
  }
  return Hold{*likely, false};
}

}  // namespace veltrix
