#include "helper/typing/keyboard_model.h"

#include <map>
#include <string>
#include <utility>

#include "driverlink/packets.h"
#include "helper/typing/character_table.h"
#include "helper/typing/key_locks.h"
#include "helper/typing/key_table.h"
#include "helper/typing/known_places.h"
#include "helper/typing/modifier_keys.h"

namespace veltrix {
namespace {

std::uint8_t heldSetOf(std::uint8_t strokeModifiers) {
  std::uint8_t set = 0;
  set |= (strokeModifiers & kHoldShift) != 0 ? kHeldShift : 0;
  set |= (strokeModifiers & kHoldControl) != 0 ? kHeldControl : 0;
  set |= (strokeModifiers & kHoldAlt) != 0 ? kHeldAlt : 0;
  set |= (strokeModifiers & kHoldSuper) != 0 ? kHeldSuper : 0;
  return set;
}

// Characters that are keys with a name; no keysym for others.
xkb_keysym_t namedKeyOf(char32_t character) {
  switch (character) {
    case U'\n':
    case U'\r':
      return XKB_KEY_Return;
    case U'\t':
      return XKB_KEY_Tab;
    default:
      return XKB_KEY_NoSymbol;
  }
}

// Programs take a letter of a shortcut for the same one in both cases.
bool hasTwoCases(xkb_keysym_t keysym) {
  return xkb_keysym_to_upper(keysym) != xkb_keysym_to_lower(keysym);
}

// What the keys produce while those modifiers are locked.
struct KeysUnderLocks {
  KeysUnderLocks(xkb_keymap* keymap, xkb_layout_index_t group, xkb_mod_mask_t locked)
      : modifiers(keymap, group, locked), keys(keysOfGroup(keymap, group, locked, modifiers)) {}

  std::optional<KeyPress> press(std::uint16_t code, std::uint8_t held) const {
    const auto hold = modifiers.toHold(held);
    return hold ? std::optional(KeyPress{hold->keys, code}) : std::nullopt;
  }

  ModifierKeys modifiers;
  std::vector<KeysymKey> keys;
  std::optional<std::vector<TypedCharacter>> characters;  // once a text has been typed
};

}  // namespace

struct KeyboardModel::Tables {
  Tables(xkb::Context keptContext, xkb::FoundKeymap found, const char* tableLocale)
      : context(std::move(keptContext)),
        keymap(std::move(found.keymap)),
        group(found.group),
        locale(tableLocale != nullptr ? tableLocale : "") {
    under(0);
  }

  // A key of this group, else of another one, else where it is known to lie.
  std::optional<KeysymKey> find(xkb_keysym_t keysym) {
    if (const auto* key = findKeysym(under(0).keys, keysym)) {
      return *key;
    }
    for (xkb_layout_index_t other = 0; other < xkb_keymap_num_layouts(keymap.get()); ++other) {
      if (other == group) {
        continue;
      }
      const KeysUnderLocks others(keymap.get(), other, 0);
      const auto* const key = findKeysym(others.keys, keysym);
      if (key != nullptr && (key->held & ~kHeldShift) == 0) {  // AltGr may be another key there
        return *key;
      }
    }
    return knownPlaceOf(keysym);
  }

  // Made when it is wanted: few locks are ever on.
  KeysUnderLocks& under(xkb_mod_mask_t mask) {
    return keys.try_emplace(mask, keymap.get(), group, mask).first->second;
  }

  // Most keyboard models never type a text, so the characters are looked for when the first one is wanted.
  std::vector<KeyPress> keysForCharacter(char32_t character, xkb_mod_mask_t mask) {
    auto& table = under(mask);
    std::vector<KeyPress> presses;
    const auto add = [&](const KeysymKey& key) {
      if (const auto press = table.press(key.code, key.held)) {
        presses.push_back(*press);
      }
    };
    if (const auto named = namedKeyOf(character); named != XKB_KEY_NoSymbol) {
      if (const auto* key = findKeysym(table.keys, named)) {
        add(*key);
      }
      return presses;
    }
    if (!table.characters) {
      table.characters = charactersOf(table.keys, context.get(), locale.c_str());
    }
    if (const auto* typed = findCharacter(*table.characters, character)) {
      for (const auto& key : typed->keys) {
        if (key.code != 0) {
          add(key);
        }
      }
    }
    return presses;
  }

  xkb::Context context;
  xkb::Keymap keymap;
  xkb_layout_index_t group;
  std::string locale;
  std::map<xkb_mod_mask_t, KeysUnderLocks> keys;  // by the modifiers that are locked
  std::uint16_t lamps = 0;
  xkb_mod_mask_t locked = 0;
  xkb_mod_mask_t lifted = 0;             // what stays locked without the lock of letters
  std::optional<std::uint16_t> liftKey;  // between the two
};

KeyboardModel::KeyboardModel(std::unique_ptr<Tables> tables) : fTables(std::move(tables)) {}
KeyboardModel::KeyboardModel(KeyboardModel&&) noexcept = default;
KeyboardModel& KeyboardModel::operator=(KeyboardModel&&) noexcept = default;
KeyboardModel::~KeyboardModel() = default;

Result<KeyboardModel> KeyboardModel::of(xkb::Context context, xkb::FoundKeymap keymap, const char* locale) {
  if (!context || !keymap.keymap) {
    return Error{0, "there is no keyboard layout", {}};
  }
  return KeyboardModel(std::make_unique<Tables>(std::move(context), std::move(keymap), locale));
}

void KeyboardModel::setLamps(std::uint16_t lit) {
  auto& tables = *fTables;
  if (lit == tables.lamps) {
    return;
  }
  tables.lamps = lit;
  auto* const keymap = tables.keymap.get();
  tables.locked = lockedBy(lit, keymap, tables.group);
  tables.lifted = tables.locked & ~lockedBy(kCapsLockLamp, keymap, tables.group);
  tables.liftKey = tables.lifted != tables.locked
                       ? keyThatLifts(keymap, tables.group, tables.locked, tables.lifted)
                       : std::nullopt;
}

std::optional<KeyPress> KeyboardModel::keysFor(const KeyStroke& stroke) const {
  const auto held = heldSetOf(stroke.modifiers);
  if (!hasTwoCases(stroke.keysym)) {
    const auto& table = fTables->under(fTables->locked);
    if (const auto* key = findKeysym(table.keys, stroke.keysym)) {
      return table.press(key->code, held | key->held);
    }
  }
  const auto key = fTables->find(stroke.keysym);
  return key ? fTables->under(0).press(key->code, held | key->held) : std::nullopt;
}

std::vector<KeyPress> KeyboardModel::keysForCharacter(char32_t character) const {
  return fTables->keysForCharacter(character, fTables->locked);
}

std::optional<KeyPress> KeyboardModel::keyThatLiftsLock() const {
  return fTables->liftKey ? std::optional(KeyPress{{}, *fTables->liftKey}) : std::nullopt;
}

std::vector<KeyPress> KeyboardModel::keysWithLockLifted(char32_t character) const {
  const bool canBe = fTables->lifted == fTables->locked || fTables->liftKey;
  return canBe ? fTables->keysForCharacter(character, fTables->lifted) : std::vector<KeyPress>{};
}

}  // namespace veltrix
