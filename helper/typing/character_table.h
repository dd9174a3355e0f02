#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "helper/typing/key_table.h"

namespace veltrix {

// A character with the keys that type it, up to the first without a code: one, or dead keys and the last.
struct TypedCharacter {
  char32_t character = 0;
  std::uint16_t effort = 0;
  std::array<KeysymKey, 3> keys{};
};

// The characters that those keys type, each once by the easiest way, in ascending order. Dead keys compose by
// the table of the locale, which is read here and not kept; keys that begin a sequence type nothing by
// themselves. Control characters are none.
std::vector<TypedCharacter> charactersOf(const std::vector<KeysymKey>& keys, xkb_context* context,
                                         const char* locale);

// Null when no keys type it.
const TypedCharacter* findCharacter(const std::vector<TypedCharacter>& characters, char32_t character);

}  // namespace veltrix
