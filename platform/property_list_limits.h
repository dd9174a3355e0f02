#pragma once

#include <cstddef>

#include "platform/property_list_io.h"

namespace veltrix::plist {

// What one document may still hold. Bytes count too, so that neither many references to one long string nor
// containers that hold the same one many times make a small document fill the memory.
class Budget {
 public:
  explicit Budget(std::size_t nodes = kMaximumNodes) : fLeft(nodes) {}

  // Takes one value with so many bytes of contents; false when the budget is used up.
  bool take(std::size_t bytes = 0) {
    const std::size_t cost = 1 + bytes / kBytesPerNode;
    if (cost > fLeft) {
      return false;
    }
    fLeft -= cost;
    return true;
  }

 private:
  static constexpr std::size_t kBytesPerNode = 64;
  std::size_t fLeft;
};

}  // namespace veltrix::plist
