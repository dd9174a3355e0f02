#pragma once

#include <cstdint>

namespace veltrix {

// The running system's release packed as 0x10M0: 0x1060 to 0x1090, 0x1000 for anything older.
std::uint32_t MacOSXVersion();

}  // namespace veltrix
