#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/desktop_entry.h"

// Whatever an entry says, what is written from it reads back as the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const veltrix::DesktopEntry entry =
      veltrix::readDesktopEntry(std::string_view(reinterpret_cast<const char*>(data), size));
  if (!entry.name || entry.arguments.empty()) {
    return 0;
  }
  const veltrix::DesktopEntry again =
      veltrix::readDesktopEntry(veltrix::writeAutostartEntry(*entry.name, entry.arguments.front()));
  if (again.name != entry.name || again.arguments.size() != 1 ||
      again.arguments.front() != entry.arguments.front()) {
    std::abort();
  }
  return 0;
}
