#include "util/system_error.h"

#include <array>
#include <cstring>
#include <string>

namespace veltrix {

Phrase systemReason(int code) {
  std::array<char, 128> buffer = {};
  return {strerror_r(code, buffer.data(), buffer.size()), {}};
}

Error systemError(int code, std::string_view action, std::string_view path) {
  return phrasedError(code,
                      {std::string(action) + " %1: %2", {given(std::string(path)), systemReason(code)}});
}

}  // namespace veltrix
