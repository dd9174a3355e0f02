#pragma once

namespace veltrix {

// The release of the system's interface kit, as a number that grows with each release. Reads as the newest
// release that the version table of helperlink/system_version.h knows, unless a test has set another.
double systemKitVersion();
void setSystemKitVersionForTesting(double version);

}  // namespace veltrix
