#include "helper/typing/character_table.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "platform/compose_table.h"
#include "platform/text_encoding.h"

namespace veltrix {
namespace {

constexpr unsigned kKeypadEffort = 10000;
constexpr unsigned kDeadKeyEffort = 1000;
constexpr unsigned kDoubledDeadKeyEffort = 500;  // an accent is easier known by dead key and space

bool isText(char32_t character) {
  constexpr char32_t kDelete = 0x7F;
  constexpr char32_t kFirstAfterControls = 0xA0;
  return character >= U' ' && (character < kDelete || character >= kFirstAfterControls);
}

// Finds what sequences of keys compose.
class Composer {
 public:
  Composer(const std::vector<KeysymKey>& keys, xkb_context* context, const char* locale)
      : fKeys(keys), fTable(xkb::composeTableOf(context, locale != nullptr ? locale : "")) {
    if (fTable) {
      fState.reset(xkb_compose_state_new(fTable.get(), XKB_COMPOSE_STATE_NO_FLAGS));
    }
  }

  std::vector<TypedCharacter> all() {
    for (const auto& key : fKeys) {
      const auto status = feed({key});
      if (status == XKB_COMPOSE_NOTHING) {
        add(xkb_keysym_to_utf32(key.keysym), {key});
      } else if (status == XKB_COMPOSE_COMPOSED) {
        addComposed({key});
      } else if (status == XKB_COMPOSE_COMPOSING && key.keysym != XKB_KEY_Multi_key && !isOnKeypad(key)) {
        follow({key}, 1);
      }
    }
    return std::move(fFound);
  }

 private:
  using Sequence = std::array<KeysymKey, 3>;

  // The state of the table after a sequence from the beginning.
  xkb_compose_status feed(const Sequence& sequence) {
    if (!fState) {
      return XKB_COMPOSE_NOTHING;
    }
    xkb_compose_state_reset(fState.get());
    for (const auto& key : sequence) {
      if (key.code != 0 && xkb_compose_state_feed(fState.get(), key.keysym) == XKB_COMPOSE_FEED_IGNORED) {
        return XKB_COMPOSE_CANCELLED;  // a modifier key
      }
    }
    return xkb_compose_state_get_status(fState.get());
  }

  // What `length` keys that have begun a sequence become with one more, or with two.
  void follow(Sequence sequence, std::size_t length) {
    for (const auto& key : fKeys) {
      if (isOnKeypad(key) || key.keysym == XKB_KEY_Multi_key) {
        continue;
      }
      sequence[length] = key;
      const auto status = feed(sequence);
      if (status == XKB_COMPOSE_COMPOSED) {
        addComposed(sequence);
      } else if (status == XKB_COMPOSE_COMPOSING && length + 1 < sequence.size()) {
        follow(sequence, length + 1);
      }
    }
  }

  void addComposed(const Sequence& sequence) {
    std::array<char, 64> buffer{};
    const int length = xkb_compose_state_get_utf8(fState.get(), buffer.data(), buffer.size());
    const std::string_view text(buffer.data(),
                                std::min<std::size_t>(static_cast<std::size_t>(length), buffer.size() - 1));
    std::size_t at = 0;
    const auto character = nextUtf8(text, at);
    if (character && at == text.size()) {
      add(*character, sequence);
    }
  }

  void add(char32_t character, const Sequence& sequence) {
    if (!isText(character)) {
      return;
    }
    unsigned effort = 0;
    const KeysymKey* last = nullptr;
    for (const auto& key : sequence) {
      if (key.code != 0) {
        effort +=
            reluctance(key) + (isOnKeypad(key) ? kKeypadEffort : 0) + (last != nullptr ? kDeadKeyEffort : 0);
        last = &key;
      }
    }
    if (last != &sequence[0] && xkb_keysym_to_utf32(last->keysym) == 0) {
      effort += kDoubledDeadKeyEffort;
    }
    fFound.push_back({character, static_cast<std::uint16_t>(effort), sequence});
  }

  const std::vector<KeysymKey>& fKeys;
  xkb::ComposeTable fTable;
  xkb::ComposeState fState;
  std::vector<TypedCharacter> fFound;
};

}  // namespace

std::vector<TypedCharacter> charactersOf(const std::vector<KeysymKey>& keys, xkb_context* context,
                                         const char* locale) {
  auto found = Composer(keys, context, locale).all();
  std::stable_sort(found.begin(), found.end(), [](const TypedCharacter& a, const TypedCharacter& b) {
    return a.character != b.character ? a.character < b.character : a.effort < b.effort;
  });
  const auto end = std::unique(
      found.begin(), found.end(),
      [](const TypedCharacter& a, const TypedCharacter& b) { return a.character == b.character; });
  return {found.begin(), end};
}

const TypedCharacter* findCharacter(const std::vector<TypedCharacter>& characters, char32_t character) {
  const auto found =
      std::lower_bound(characters.begin(), characters.end(), character,
                       [](const TypedCharacter& typed, char32_t wanted) { return typed.character < wanted; });
  return found != characters.end() && found->character == character ? &*found : nullptr;
}

}  // namespace veltrix
