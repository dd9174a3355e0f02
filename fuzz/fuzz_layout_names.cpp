#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/layout_names.h"

namespace {

// The assignment as the system's own tool writes it; empty when no quotes can stand around the value.
std::string assignment(const char* key, const std::string& value) {
  const char quote = value.find('"') == std::string::npos ? '"' : '\'';
  return value.find(quote) == std::string::npos ? key + std::string("=") + quote + value + quote + "\n"
                                                : std::string();
}

}  // namespace

// Whatever names a file holds, the same names written in quotes read back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  veltrix::parseLayoutName(text);
  const auto names = veltrix::readLayoutNames(text);
  if (!names) {
    return 0;
  }
  const std::string layout = assignment("XKBLAYOUT", names->layout);
  const std::string variant = assignment("XKBVARIANT", names->variant);
  if (layout.empty() || variant.empty()) {
    return 0;
  }
  const auto again = veltrix::readLayoutNames(layout + variant);
  if (!again || again->layout != names->layout || again->variant != names->variant) {
    std::abort();
  }
  return 0;
}
