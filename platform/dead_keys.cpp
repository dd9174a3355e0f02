#include "platform/dead_keys.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/compose_table.h"
#include "platform/text_encoding.h"

namespace veltrix::xkb {
namespace {

bool beginsSequence(xkb_keysym_t keysym) {
  return keysym == XKB_KEY_Multi_key || (keysym >= XKB_KEY_dead_grave && keysym <= XKB_KEY_dead_greek);
}

}  // namespace

bool DeadKeys::load() {
  if (!fLoaded) {
    fLoaded = true;
    fTable = composeTableOf(fContext, composeLocale());
    if (fTable) {
      fState.reset(xkb_compose_state_new(fTable.get(), XKB_COMPOSE_STATE_NO_FLAGS));
    }
  }
  return fState != nullptr;
}

void DeadKeys::replay(std::uint32_t state) {
  std::vector<xkb_keysym_t> keysyms;
  for (; state != 0; state = fSteps[state - 1].before) {
    keysyms.push_back(fSteps[state - 1].keysym);
  }
  xkb_compose_state_reset(fState.get());
  std::for_each(keysyms.rbegin(), keysyms.rend(),
                [this](xkb_keysym_t keysym) { xkb_compose_state_feed(fState.get(), keysym); });
}

std::uint32_t DeadKeys::numberOf(std::uint32_t before, xkb_keysym_t keysym) {
  const auto known = std::find_if(fSteps.begin(), fSteps.end(), [&](const Step& step) {
    return step.before == before && step.keysym == keysym;
  });
  const auto index = static_cast<std::uint32_t>(known - fSteps.begin());
  if (known == fSteps.end()) {
    fSteps.push_back({before, keysym});
  }
  return index + 1;
}

DeadKeys::Outcome DeadKeys::feed(xkb_keysym_t keysym, std::uint32_t& state, std::string& text) {
  const std::uint32_t before = state <= fSteps.size() ? state : 0;
  if ((before == 0 && !beginsSequence(keysym)) || !load()) {
    return Outcome::kPlain;
  }
  replay(before);
  if (xkb_compose_state_feed(fState.get(), keysym) == XKB_COMPOSE_FEED_IGNORED) {
    return Outcome::kPlain;  // a modifier key, which no sequence minds
  }
  state = 0;
  switch (xkb_compose_state_get_status(fState.get())) {
    case XKB_COMPOSE_COMPOSING:
      state = numberOf(before, keysym);
      return Outcome::kPending;
    case XKB_COMPOSE_COMPOSED: {
      std::array<char, 64> buffer{};
      xkb_compose_state_get_utf8(fState.get(), buffer.data(), buffer.size());
      text = buffer.data();
      return Outcome::kComposed;
    }
    case XKB_COMPOSE_CANCELLED:
      return Outcome::kCancelled;
    case XKB_COMPOSE_NOTHING:
      break;
  }
  return Outcome::kPlain;
}

char32_t DeadKeys::composed(xkb_keysym_t first, xkb_keysym_t second) {
  std::uint32_t state = 0;
  std::string text;
  std::size_t at = 0;
  if (feed(first, state, text) != Outcome::kPending || feed(second, state, text) != Outcome::kComposed) {
    return 0;
  }
  const auto character = nextUtf8(text, at);
  return character && at == text.size() ? *character : 0;
}

char32_t DeadKeys::accentOf(xkb_keysym_t keysym) {
  if (!beginsSequence(keysym)) {
    return 0;
  }
  const char32_t twice = composed(keysym, keysym);
  return twice != 0 ? twice : composed(keysym, XKB_KEY_space);
}

}  // namespace veltrix::xkb
