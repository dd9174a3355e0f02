#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/xkb_handles.h"

namespace veltrix::xkb {

// Dead keys: composes keysyms by the table for the user's language, or by the one for English when there is
// none (as in the C locale). A sequence that is not finished is a number above 0 which this object
// understands. The table is read when a sequence begins. Not thread-safe.
class DeadKeys {
 public:
  enum class Outcome { kPlain, kPending, kComposed, kCancelled };

  explicit DeadKeys(xkb_context* context) : fContext(context) {}

  // Adds a keysym to the sequence `state`, 0 for none, and gives its new number in `state`. kPlain: the
  // keysym belongs to no sequence. kComposed: `text` is what the whole sequence types.
  Outcome feed(xkb_keysym_t keysym, std::uint32_t& state, std::string& text);

  // The accent of a dead key alone; 0 when the keysym is no dead key or its accent has no character.
  char32_t accentOf(xkb_keysym_t keysym);

 private:
  struct Step {
    std::uint32_t before;
    xkb_keysym_t keysym;
  };

  bool load();
  void replay(std::uint32_t state);
  std::uint32_t numberOf(std::uint32_t before, xkb_keysym_t keysym);
  char32_t composed(xkb_keysym_t first, xkb_keysym_t second);

  xkb_context* fContext;
  bool fLoaded = false;
  ComposeTable fTable;
  ComposeState fState;
  std::vector<Step> fSteps;  // number n is the step n - 1 after the sequence `before`
};

}  // namespace veltrix::xkb
