#include "settings/deep_copy.h"

#include "platform/property_list_io.h"

namespace veltrix {
namespace {

plist::Value copyThroughBinary(const plist::Value& value) {
  const auto bytes = plist::writeBinary(value);
  if (!bytes) {
    return {};
  }
  const auto copy = plist::read(bytes.value());
  return copy ? copy.value().root : plist::Value();
}

}  // namespace

plist::Dictionary mutableDeepAutoreleasedCopy(const plist::Dictionary& value) {
  return copyThroughBinary(value).asDictionary();
}

plist::Array mutableDeepAutoreleasedCopy(const plist::Array& value) {
  return copyThroughBinary(value).asArray();
}

}  // namespace veltrix
