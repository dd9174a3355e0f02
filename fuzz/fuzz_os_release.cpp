#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/os_release.h"

// Whatever a file says, no part is negative, and the release written plainly reads back as the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const veltrix::OsRelease release =
      veltrix::parseOsRelease(std::string_view(reinterpret_cast<const char*>(data), size));
  const std::string plain = "VERSION_ID=" + std::to_string(release.major) + "." +
                            std::to_string(release.minor) + "." + std::to_string(release.bugFix);
  if (release.major < 0 || release.minor < 0 || release.bugFix < 0 ||
      veltrix::parseOsRelease(plain) != release) {
    std::abort();
  }
  return 0;
}
