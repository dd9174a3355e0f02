#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>
#include <cstring>

#include "settings/deep_copy.h"
#include "settings/driver_record.h"
#include "tests/support/arbitrary_settings.h"

namespace veltrix {
namespace {

struct Converted {
  bool done = false;
  DriverRecord record;
};

Converted convert(const plist::Dictionary& entry, const plist::Dictionary& fallback, int initialByte) {
  Converted converted;
  std::memset(&converted.record, initialByte, sizeof converted.record);
  converted.done = VeltrixAppPrefsDictToStruct(entry, fallback, &converted.record);
  return converted;
}

bool sameRecord(const DriverRecord& a, const DriverRecord& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

RC_GTEST_PROP(DriverRecordProperty, DependsOnItsInputsAlone, ()) {
  const auto entry = *testing::arbitraryEntry();
  const auto fallback = *testing::arbitraryEntry();
  const auto first = convert(entry, fallback, 0);
  const auto second =
      convert(mutableDeepAutoreleasedCopy(entry), mutableDeepAutoreleasedCopy(fallback), 0xFF);
  RC_ASSERT(first.done == second.done);
  RC_ASSERT(sameRecord(first.record, second.record));
}

RC_GTEST_PROP(DriverRecordProperty, ChangesNeitherEntry, ()) {
  const auto entry = *testing::arbitraryEntry();
  const auto fallback = *testing::arbitraryEntry();
  const auto entryBefore = mutableDeepAutoreleasedCopy(entry);
  const auto fallbackBefore = mutableDeepAutoreleasedCopy(fallback);
  convert(entry, fallback, 0);
  RC_ASSERT(plist::equal(entry, entryBefore));
  RC_ASSERT(plist::equal(fallback, fallbackBefore));
}

RC_GTEST_PROP(DriverRecordProperty, IsTheSameFromTheFile, ()) {
  const auto entry = *testing::arbitraryEntry();
  const auto xml = plist::writeXml(entry);
  RC_ASSERT(xml.ok());
  const auto fromFile = plist::read(xml.value()).value().root.asDictionary();
  RC_ASSERT(sameRecord(convert(entry, {}, 0).record, convert(fromFile, {}, 0).record));
}

RC_GTEST_PROP(DriverRecordProperty, KeepsItsReservedBytesZero, ()) {
  const auto converted = convert(*testing::arbitraryEntry(), *testing::arbitraryEntry(), 0xAA);
  for (const auto byte : converted.record.reserved) {
    RC_ASSERT(byte == 0);
  }
  for (const auto& action : converted.record.action) {
    RC_ASSERT(std::uint32_t{action.reserved} == 0U);
  }
  RC_ASSERT(converted.record.actionCount <= kRecordActions);
  RC_ASSERT((converted.record.axisFlags & 0xF0) == 0);
}

}  // namespace
}  // namespace veltrix
