#include "helper/typing/keyboard_model.h"

#include <string>
#include <utility>

#include "helper/typing/character_table.h"
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

}  // namespace

struct KeyboardModel::Tables {
  Tables(xkb::Context keptContext, xkb::FoundKeymap found, const char* tableLocale)
      : context(std::move(keptContext)),
        keymap(std::move(found.keymap)),
        group(found.group),
        locale(tableLocale != nullptr ? tableLocale : ""),
        modifiers(keymap.get(), group),
        keys(keysOfGroup(keymap.get(), group, modifiers)) {}

  // A key of this group, else of another one, else where it is known to lie.
  std::optional<KeysymKey> find(xkb_keysym_t keysym) const {
    if (const auto* key = findKeysym(keys, keysym)) {
      return *key;
    }
    for (xkb_layout_index_t other = 0; other < xkb_keymap_num_layouts(keymap.get()); ++other) {
      if (other == group) {
        continue;
      }
      const auto others = keysOfGroup(keymap.get(), other, ModifierKeys(keymap.get(), other));
      const auto* const key = findKeysym(others, keysym);
      if (key != nullptr && (key->held & ~kHeldShift) == 0) {  // AltGr may be another key there
        return *key;
      }
    }
    return knownPlaceOf(keysym);
  }

  std::optional<KeyPress> press(std::uint16_t code, std::uint8_t held) const {
    const auto hold = modifiers.toHold(held);
    return hold ? std::optional(KeyPress{hold->keys, code}) : std::nullopt;
  }

  // Most keyboard models never type a text, so the characters are looked for when the first one is wanted.
  const std::vector<TypedCharacter>& allCharacters() {
    if (!hasCharacters) {
      characters = charactersOf(keys, context.get(), locale.c_str());
      hasCharacters = true;
    }
    return characters;
  }

  xkb::Context context;
  xkb::Keymap keymap;
  xkb_layout_index_t group;
  std::string locale;
  ModifierKeys modifiers;
  std::vector<KeysymKey> keys;
  std::vector<TypedCharacter> characters;
  bool hasCharacters = false;
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

std::optional<KeyPress> KeyboardModel::keysFor(const KeyStroke& stroke) const {
  const auto key = fTables->find(stroke.keysym);
  return key ? fTables->press(key->code, heldSetOf(stroke.modifiers) | key->held) : std::nullopt;
}

std::vector<KeyPress> KeyboardModel::keysForCharacter(char32_t character) const {
  std::vector<KeyPress> presses;
  const auto add = [&](const KeysymKey& key) {
    if (const auto press = fTables->press(key.code, key.held)) {
      presses.push_back(*press);
    }
  };
  if (const auto named = namedKeyOf(character); named != XKB_KEY_NoSymbol) {
    if (const auto* key = findKeysym(fTables->keys, named)) {
      add(*key);
    }
    return presses;
  }
  if (const auto* typed = findCharacter(fTables->allCharacters(), character)) {
    for (const auto& key : typed->keys) {
      if (key.code != 0) {
        add(key);
      }
    }
  }
  return presses;
}

}  // namespace veltrix
