#pragma once

#include <chrono>
#include <functional>

namespace veltrix::testing {

// Looks every few milliseconds whether the condition has come true, at most for `limit`. The result says
// whether it did. For conditions of other processes, which offer no descriptor to wait on.
bool waitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds limit = std::chrono::seconds(10));

}  // namespace veltrix::testing
