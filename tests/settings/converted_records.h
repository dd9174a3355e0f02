#pragma once

// Records of the driver that entries of the settings were converted into, and such entries.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <utility>

#include "settings/driver_record.h"
#include "tests/support/settings_documents.h"

namespace veltrix::testing {

using Bytes = std::array<std::uint8_t, sizeof(DriverRecord)>;

inline Bytes bytesOf(const DriverRecord& record) {
  Bytes bytes{};
  std::memcpy(bytes.data(), &record, bytes.size());
  return bytes;
}

inline DriverRecord filledWith(unsigned char byte) {
  DriverRecord record;
  std::memset(&record, byte, sizeof record);
  return record;
}

inline DriverRecord unsetRecord() {
  DriverRecord record{};
  record.speed = 255;
  record.acceleration = 255;
  return record;
}

inline DriverRecord recordOf(const plist::Dictionary& entry, const plist::Dictionary& fallback = {}) {
  DriverRecord record = filledWith(0xAA);
  EXPECT_TRUE(VeltrixAppPrefsDictToStruct(entry, fallback, &record));
  return record;
}

inline plist::Dictionary withOptions(std::initializer_list<std::pair<const char*, plist::Value>> options) {
  auto entry = entryOf(1, 2);
  entry.set("options", dictionaryOf(options));
  return entry;
}

inline plist::Dictionary withButtons(std::initializer_list<std::pair<const char*, plist::Value>> buttons) {
  auto entry = entryOf(1, 2);
  entry.set("buttons", dictionaryOf(buttons));
  return entry;
}

}  // namespace veltrix::testing
