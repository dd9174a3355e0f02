#include "platform/system_release.h"

#include <atomic>

namespace veltrix {

namespace {

constexpr double kNewestKnownRelease = 1246.0;

std::atomic<double>& version() {
  static std::atomic<double> value = kNewestKnownRelease;
  return value;
}

}  // namespace

double systemKitVersion() {
  return version();
}

void setSystemKitVersionForTesting(double newVersion) {
  version() = newVersion;
}

}  // namespace veltrix
