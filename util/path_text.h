#pragma once

#include <string>
#include <string_view>

namespace veltrix {

// The path without final slashes; "/" stays.
inline std::string withoutFinalSlashes(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') {
    path.remove_suffix(1);
  }
  return std::string(path);
}

}  // namespace veltrix
