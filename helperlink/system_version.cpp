#include "helperlink/system_version.h"

#include "platform/system_release.h"

namespace veltrix {

namespace {

struct Release {
  double firstKitVersion;
  std::uint32_t packed;
};

// Newest first. What is older than the last row reads as the very first release on purpose: nothing that old
// is told apart.
constexpr Release kReleases[] = {{1246.0, 0x1090}, {1162.0, 0x1080}, {1121.0, 0x1070}, {1038.0, 0x1060}};
constexpr std::uint32_t kOlder = 0x1000;

}  // namespace

std::uint32_t MacOSXVersion() {
  const double kitVersion = systemKitVersion();
  for (const Release& release : kReleases) {
    if (kitVersion >= release.firstKitVersion) {
      return release.packed;
    }
  }
  return kOlder;
}

}  // namespace veltrix
