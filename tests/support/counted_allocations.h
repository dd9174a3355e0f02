#pragma once

#include <cstddef>

namespace veltrix::test {

// How often memory was allocated in this program so far. Linking this replaces the operators new and delete.
std::size_t countedAllocations() noexcept;

}  // namespace veltrix::test
