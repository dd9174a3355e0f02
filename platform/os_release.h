#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace veltrix {

// The release of the operating system; a part that it does not have is 0.
struct OsRelease {
  std::int32_t major = 0;
  std::int32_t minor = 0;
  std::int32_t bugFix = 0;
  friend bool operator==(const OsRelease&, const OsRelease&) = default;
};

// The release that VERSION_ID of an os-release file tells, "12" or "22.04" for instance, quoted as a shell
// quotes. Of a key that occurs twice the last counts; a part ends where its digits end, and one too large is
// the largest number. All zeros for bytes that tell nothing.
OsRelease parseOsRelease(std::string_view bytes);

// Of the first of the files that can be read; all zeros when none can.
OsRelease readOsRelease(const std::vector<std::string>& paths = {"/etc/os-release", "/usr/lib/os-release"});

}  // namespace veltrix
