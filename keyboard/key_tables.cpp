#include "keyboard/key_tables.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>

#include "keyboard/layout_access.h"
#include "keyboard/virtual_keys.h"
#include "platform/mac_roman.h"
#include "settings/modifier_mask.h"

namespace {

constexpr std::uint8_t byteOf(std::uint16_t mask) {
  return static_cast<std::uint8_t>(mask >> veltrix::kModifierByteShift);
}

constexpr std::uint8_t kShift = byteOf(veltrix::kShiftModifier);
constexpr std::uint8_t kOption = byteOf(veltrix::kOptionModifier);
constexpr std::uint8_t kControl = byteOf(veltrix::kControlModifier);
constexpr std::uint8_t kCapsLock = byteOf(veltrix::kCapsLockModifier);
constexpr std::uint8_t kCommand = byteOf(veltrix::kCommandModifier);

// The ways of holding modifiers, in the order in which they are tried.
constexpr auto kCombinations = std::to_array<std::uint8_t>(
    {0, kShift, kCapsLock, kOption, kOption | kShift, kOption | kCapsLock, kControl});

struct Weight {
  std::uint8_t modifier;
  int weight;
};

// How hard a modifier is to hold.
constexpr auto kWeights =
    std::to_array<Weight>({{kShift, 1}, {kOption, 2}, {kControl, 4}, {kCapsLock, 8}, {kCommand, 16}});

constexpr auto kKeypadKeys =
    std::to_array<std::uint8_t>({81, 75, 67, 89, 91, 92, 78, 86, 87, 88, 69, 83, 84, 85, 82, 65, 76});

constexpr bool isOnKeypad(std::uint8_t keyCode) {
  return std::find(kKeypadKeys.begin(), kKeypadKeys.end(), keyCode) != kKeypadKeys.end();
}

// The keypad with the keys whose codes lie between those of the keypad.
constexpr bool isInKeypadBlock(std::uint8_t keyCode) {
  return keyCode >= 64 && keyCode <= 95;
}

int weightOf(std::uint8_t modifiers) {
  int sum = 0;
  for (const auto& [modifier, weight] : kWeights) {
    sum += (modifiers & modifier) != 0 ? weight : 0;
  }
  return sum;
}

// What a walk over all keys does with dead keys, and what it enters for characters that are none.
enum class Policy {
  kOneSequence,  // dead keys act on the key after them; what is no character of Mac OS Roman counts as '?'
  kSingleKeys    // every key on its own, and only characters of Mac OS Roman
};

std::optional<std::uint8_t> characterOf(std::optional<char16_t> unit, Policy policy) {
  if (!unit) {
    return std::nullopt;
  }
  if (policy == Policy::kOneSequence) {
    return veltrix::macRomanOrSubstitute(*unit);
  }
  return *unit != 0 ? veltrix::macRomanFromUnicode(*unit) : std::nullopt;
}

void fill(const veltrix::KeyboardLayout& layout, std::uint8_t* keys, std::uint8_t* modifiers,
          std::int16_t preferKeypad, Policy policy) {
  std::fill_n(keys, kCharacters, veltrix::kNoVirtualKey);
  std::fill_n(modifiers, kCharacters, std::uint8_t{0});
  std::uint32_t deadKeyState = 0;
  for (const auto held : kCombinations) {
    for (std::uint8_t key = 0; key < veltrix::kVirtualKeys; ++key) {
      deadKeyState = policy == Policy::kSingleKeys ? 0 : deadKeyState;
      const auto character =
          characterOf(veltrix::translateVirtualKey(layout, key, held, deadKeyState), policy);
      if (character &&
          (keys[*character] == veltrix::kNoVirtualKey ||
           IsBetterKeystroke(key, held, keys[*character], modifiers[*character], preferKeypad))) {
        keys[*character] = key;
        modifiers[*character] = held;
      }
    }
  }
}

}  // namespace

std::int16_t SetupKeyTables(std::unique_ptr<std::uint8_t[]>* keys,
                            std::unique_ptr<std::uint8_t[]>* modifiers) {
  return SetupKeyTablesNumPad(keys, modifiers, 0);
}

std::int16_t SetupKeyTablesNumPad(std::unique_ptr<std::uint8_t[]>* keys,
                                  std::unique_ptr<std::uint8_t[]>* modifiers, std::int16_t preferKeypad) {
  if (keys == nullptr || modifiers == nullptr) {
    return 0;
  }
  keys->reset(new (std::nothrow) std::uint8_t[kCharacters]{});
  modifiers->reset(new (std::nothrow) std::uint8_t[kCharacters]{});
  return UpdateKeyTablesNumPad(keys->get(), modifiers->get(), preferKeypad);
}

std::int16_t UpdateKeyTables(std::uint8_t* keys, std::uint8_t* modifiers) {
  return UpdateKeyTablesNumPad(keys, modifiers, 0);
}

std::int16_t UpdateKeyTablesNumPad(std::uint8_t* keys, std::uint8_t* modifiers, std::int16_t preferKeypad) {
  const veltrix::KeyboardLayout* layout = nullptr;
  const void* legacyLayout = nullptr;
  if (keys == nullptr || modifiers == nullptr || CompatibleGetKeyboardLayout(&layout, &legacyLayout) != 0) {
    return 0;
  }
  fill(*layout, keys, modifiers, preferKeypad, Policy::kOneSequence);
  return 1;
}

bool IsBetterKeystroke(std::uint8_t newKey, std::uint8_t newModifiers, std::uint8_t oldKey,
                       std::uint8_t oldModifiers, std::int16_t preferKeypad) {
  if (newKey == veltrix::kVirtualEscape && oldKey == veltrix::kVirtualKeypadClear) {
    return true;
  }
  if (preferKeypad != 0 && isOnKeypad(newKey) != isOnKeypad(oldKey)) {
    return isOnKeypad(newKey);
  }
  if (isInKeypadBlock(newKey) != isInKeypadBlock(oldKey)) {
    return isInKeypadBlock(oldKey);
  }
  return weightOf(newModifiers) < weightOf(oldModifiers);
}

std::uint16_t GetCharMessage(const std::uint8_t* keys, std::uint8_t character) {
  return static_cast<std::uint16_t>(keys[character] << 8 | character);
}

std::uint16_t GetCharModifiers(const std::uint8_t* modifiers, std::uint8_t character) {
  return static_cast<std::uint16_t>(modifiers[character] << veltrix::kModifierByteShift);
}

namespace veltrix {

void fillTypingTables(const KeyboardLayout& layout, std::uint8_t* keys, std::uint8_t* modifiers,
                      bool preferKeypad) {
  fill(layout, keys, modifiers, preferKeypad ? 1 : 0, Policy::kSingleKeys);
}

}  // namespace veltrix
