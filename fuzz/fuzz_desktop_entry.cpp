#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/desktop_entry.h"

namespace {

void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

// What is written from an entry reads back as the same.
void checkRoundTrip(const veltrix::DesktopEntry& entry) {
  if (!entry.name || entry.arguments.empty()) {
    return;
  }
  const veltrix::DesktopEntry again =
      veltrix::readDesktopEntry(veltrix::writeAutostartEntry(*entry.name, entry.arguments.front()));
  require(again.name == entry.name && again.arguments.size() == 1 &&
          again.arguments.front() == entry.arguments.front() && again.type == "Application");
}

// A language changes texts only, and takes none away.
void checkLanguage(const veltrix::DesktopEntry& entry, const veltrix::DesktopEntry& translated) {
  require(translated.arguments == entry.arguments && translated.type == entry.type &&
          translated.tryExec == entry.tryExec && translated.onlyShowIn == entry.onlyShowIn &&
          translated.notShowIn == entry.notShowIn && translated.hidden == entry.hidden &&
          translated.noDisplay == entry.noDisplay && translated.busActivatable == entry.busActivatable &&
          translated.terminal == entry.terminal && translated.folder == entry.folder);
  require(translated.name.has_value() || !entry.name.has_value());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const veltrix::DesktopEntry entry = veltrix::readDesktopEntry(bytes);
  checkRoundTrip(entry);
  checkLanguage(entry, veltrix::readDesktopEntry(bytes, "de_AT.UTF-8@euro"));
  return 0;
}
