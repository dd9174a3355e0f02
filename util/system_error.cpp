#include "util/system_error.h"

#include <array>
#include <cstring>
#include <string>

namespace veltrix {

Error systemError(int code, std::string_view action, std::string_view path) {
  std::array<char, 128> buffer = {};
  const char* reason = strerror_r(code, buffer.data(), buffer.size());
  return {code, std::string(action) + ' ' + std::string(path) + ": " + reason, {}};
}

}  // namespace veltrix
