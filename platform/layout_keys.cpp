#include "platform/layout_keys.h"

#include <string>
#include <string_view>
#include <utility>

#include "platform/key_characters.h"
#include "platform/mac_roman.h"
#include "platform/text_encoding.h"

namespace veltrix::xkb {
namespace {

constexpr std::uint8_t kShift = 0x02;
constexpr std::uint8_t kCapsLock = 0x04;
constexpr std::uint8_t kOption = 0x08;
constexpr std::uint8_t kControl = 0x10;

// The modifiers that pressing a key of that keysym sets, held or locked.
xkb_mod_mask_t modifiersOfKeysym(xkb_keymap* keymap, xkb_keysym_t wanted) {
  for (auto key = xkb_keymap_min_keycode(keymap); key <= xkb_keymap_max_keycode(keymap); ++key) {
    const xkb_keysym_t* keysyms = nullptr;
    if (xkb_keymap_key_get_syms_by_level(keymap, key, 0, 0, &keysyms) == 1 && keysyms[0] == wanted) {
      const State state(xkb_state_new(keymap));
      xkb_state_update_key(state.get(), key, XKB_KEY_DOWN);
      if (const auto mask = xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE)) {
        return mask;
      }
    }
  }
  return 0;
}

xkb_mod_mask_t modifierNamed(xkb_keymap* keymap, const char* name) {
  const auto index = xkb_keymap_mod_get_index(keymap, name);
  return index == XKB_MOD_INVALID ? 0 : xkb_mod_mask_t{1} << index;
}

bool isOfAnotherScript(char32_t character) {
  constexpr char32_t kFirstGreek = 0x370;  // Latin letters and what has no script come before
  constexpr char32_t kFirstMoreLatin = 0x1E00;
  return character >= kFirstGreek && character < kFirstMoreLatin;
}

bool suitsShortcut(char32_t character) {
  return !isOfAnotherScript(character) && character < 0x10000 &&
         macRomanFromUnicode(static_cast<char16_t>(character)).has_value();
}

std::optional<char16_t> unitOf(char32_t character) {
  return character < 0x10000 ? std::optional(static_cast<char16_t>(character)) : std::nullopt;
}

std::optional<char16_t> singleUnit(std::string_view utf8) {
  std::size_t at = 0;
  const auto character = nextUtf8(utf8, at);
  return character && at == utf8.size() ? unitOf(*character) : std::nullopt;
}

}  // namespace

LayoutKeys::LayoutKeys(Context context, FoundKeymap found)
    : fContext(std::move(context)),
      fKeymap(std::move(found.keymap)),
      fGroup(found.group),
      fState(xkb_state_new(fKeymap.get())),
      fShift(modifierNamed(fKeymap.get(), XKB_MOD_NAME_SHIFT)),
      fCapsLock(modifierNamed(fKeymap.get(), XKB_MOD_NAME_CAPS)),
      fThirdLevel(modifiersOfKeysym(fKeymap.get(), XKB_KEY_ISO_Level3_Shift)),
      fNumLock(modifiersOfKeysym(fKeymap.get(), XKB_KEY_Num_Lock)),
      fDeadKeys(fContext.get()) {}

bool LayoutKeys::hasKey(std::uint32_t key) const {
  return xkb_keymap_num_layouts_for_key(fKeymap.get(), keycodeOf(key)) > 0;
}

std::optional<char16_t> LayoutKeys::type(std::uint32_t key, std::uint8_t modifiers,
                                         std::uint32_t& deadKeyState) {
  const auto keysym = keysymOf(key, modifiers, fGroup);
  if (keysym == XKB_KEY_NoSymbol) {
    return u'\0';
  }
  std::string text;
  switch (fDeadKeys.feed(keysym, deadKeyState, text)) {
    case DeadKeys::Outcome::kPending:
      return u'\0';
    case DeadKeys::Outcome::kCancelled:
      return std::nullopt;
    case DeadKeys::Outcome::kComposed:
      return singleUnit(text);
    case DeadKeys::Outcome::kPlain:
      break;
  }
  const auto named = characterOfNamedKey(key, keysym);
  return named ? named : unitOf(xkb_keysym_to_utf32(keysym));
}

char16_t LayoutKeys::typeOnKeypad(std::uint32_t key) {
  xkb_state_update_mask(fState.get(), 0, 0, fNumLock, 0, 0, fGroup);
  return characterOfKeypad(xkb_state_key_get_one_sym(fState.get(), keycodeOf(key))).value_or(u'\0');
}

std::optional<char16_t> LayoutKeys::typeShortcut(std::uint32_t key, std::uint8_t modifiers) {
  const auto keysym = keysymOf(key, modifiers, fGroup);
  if (const auto named = characterOfNamedKey(key, keysym)) {
    return named;
  }
  char32_t character = shortcutCharacter(keysym);
  if (!suitsShortcut(character)) {
    character = latinCharacter(key, modifiers).value_or(character);
  }
  return unitOf((modifiers & kControl) != 0 && character != 0 ? controlCharacterOf(character) : character);
}

// Command and Control choose no level; what Control does to a character comes after it.
xkb_keysym_t LayoutKeys::keysymOf(std::uint32_t key, std::uint8_t modifiers, xkb_layout_index_t group) {
  const auto held = ((modifiers & kShift) != 0 ? fShift : 0) | ((modifiers & kOption) != 0 ? fThirdLevel : 0);
  const auto locked = (modifiers & kCapsLock) != 0 ? fCapsLock : 0;
  xkb_state_update_mask(fState.get(), held, 0, locked, 0, 0, group);
  return xkb_state_key_get_one_sym(fState.get(), keycodeOf(key));
}

char32_t LayoutKeys::shortcutCharacter(xkb_keysym_t keysym) {
  const auto accent = fDeadKeys.accentOf(keysym);
  return accent != 0 ? accent : xkb_keysym_to_utf32(keysym);
}

// The character of the same key in another group of the keymap, else on the American keyboard.
std::optional<char32_t> LayoutKeys::latinCharacter(std::uint32_t key, std::uint8_t modifiers) {
  for (xkb_layout_index_t group = 0; group < xkb_keymap_num_layouts_for_key(fKeymap.get(), keycodeOf(key));
       ++group) {
    const char32_t character = shortcutCharacter(keysymOf(key, modifiers, group));
    if (character != 0 && suitsShortcut(character)) {
      return character;
    }
  }
  auto* const keys = american();
  const char32_t character = keys != nullptr ? keys->shortcutCharacter(keys->keysymOf(key, modifiers, 0)) : 0;
  return character != 0 ? std::optional(character) : std::nullopt;
}

LayoutKeys* LayoutKeys::american() {
  if (!fTriedAmerican) {
    fTriedAmerican = true;
    auto found =
        keymapOfNames(fContext.get(), {.model = "", .layout = kAmericanLayout, .variant = "", .options = ""});
    if (found.keymap) {
      fAmerican = std::make_unique<LayoutKeys>(Context(xkb_context_ref(fContext.get())), std::move(found));
    }
  }
  return fAmerican.get();
}

}  // namespace veltrix::xkb
