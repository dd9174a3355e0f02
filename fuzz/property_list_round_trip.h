#pragma once

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/property_list_io.h"

namespace veltrix::plist {

inline std::string_view characters(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

inline void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

// What reads must be writable as binary and read back equal, and as XML wherever XML can carry it. Dates are
// the exception: XML drops their fractions.
inline void checkRoundTrip(const Value& value) {
  const Result<std::string> binary = writeBinary(value);
  require(binary.ok());
  const Result<Document> back = read(binary.value());
  require(back.ok() && equal(back.value().root, value));
  const Result<std::string> xml = writeXml(value);
  if (!xml) {
    return;
  }
  const Result<Document> first = read(xml.value());
  require(first.ok());
  require(writeXml(first.value().root).value() == xml.value());
}

inline void checkRead(std::string_view bytes, const Result<Value>& result) {
  if (result) {
    checkRoundTrip(result.value());
  } else {
    require(result.error().offset.has_value() && *result.error().offset <= bytes.size());
  }
}

}  // namespace veltrix::plist
