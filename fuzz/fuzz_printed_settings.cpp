#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/byte_source.h"
#include "helper/desktop/printed_shortcut.h"
#include "helper/typing/gnome_sources.h"

namespace {

// A text in the way of gsettings.
std::string printed(std::string_view text) {
  std::string quoted = "'";
  for (const char character : text) {
    if (character == '\'' || character == '\\') {
      quoted += '\\';
    }
    quoted += character;
  }
  return quoted + "'";
}

}  // namespace

// Whatever gsettings prints, a group is one of a keymap's, no more sources come out than there are
// characters, and names are read as they were written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (veltrix::groupOfSources(text).value_or(0) > 2) {
    std::abort();
  }
  const auto read = veltrix::inputSources(text);
  if (read && read->size() > size) {
    std::abort();
  }
  const auto shortcut = veltrix::shortcutIn(text);
  if (shortcut && shortcut->keysym == 0) {
    std::abort();
  }

  constexpr std::size_t kLongestName = 8;
  ByteSource names(text);
  std::vector<veltrix::InputSource> sources;
  std::string list = "[";
  while (!names.isAtEnd()) {
    const auto kind = names.take(names.below(kLongestName));
    const auto name = names.take(names.below(kLongestName));
    list += (sources.empty() ? "(" : ", (") + printed(kind) + ", " + printed(name) + ")";
    sources.push_back({std::string(kind), std::string(name)});
  }
  if (veltrix::inputSources(list + "]\n") != sources) {
    std::abort();
  }
  return 0;
}
