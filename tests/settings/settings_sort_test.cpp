#include "settings/settings_sort.h"

#include <gmock/gmock.h>

#include <rapidcheck/gtest.h>
#include <vector>

#include "tests/support/arbitrary_settings.h"
#include "tests/support/settings_documents.h"

namespace veltrix {
namespace {

using plist::Dictionary;
using testing::arrayOf;
using testing::entryOf;

Dictionary wildcardOf(const char* name) {
  auto entry = entryOf(0, 0);
  entry.set("dict version", 0);
  entry.set("name", name);
  return entry;
}

TEST(SortSettings, MovesWildcardsToTheFrontAndKeepsBothOrders) {
  const auto first = entryOf(1, 1);
  const auto second = entryOf(0, 0);  // global, yet of a layout version
  const auto third = entryOf(0, 3);
  const auto entries = arrayOf({first, wildcardOf("a"), second, third, wildcardOf("b")});
  sortWildcardEntriesFirst(entries);
  EXPECT_EQ(entries.at(0).asDictionary().stringFor("name"), "a");
  EXPECT_EQ(entries.at(1).asDictionary().stringFor("name"), "b");
  EXPECT_TRUE(entries.at(2).asDictionary().sameAs(first));
  EXPECT_TRUE(entries.at(3).asDictionary().sameAs(second));
  EXPECT_TRUE(entries.at(4).asDictionary().sameAs(third));
}

TEST(SortSettings, ReadsTheLowSixteenBits) {
  auto wildcard = entryOf(0x10000, 0x20000);
  wildcard.set("dict version", 0x30000);
  const auto entries = arrayOf({entryOf(1, 1), wildcard});
  sortWildcardEntriesFirst(entries);
  EXPECT_TRUE(entries.at(0).asDictionary().sameAs(wildcard));
}

TEST(SortSettings, LeavesElementsThatAreNoEntriesBehindTheWildcards) {
  const auto entries = arrayOf({"text", wildcardOf("a"), 5});
  sortWildcardEntriesFirst(entries);
  EXPECT_EQ(entries.at(0).asDictionary().stringFor("name"), "a");
  EXPECT_EQ(entries.at(1).asString(), "text");
}

TEST(SortSettings, TakesAMissingArray) {
  sortWildcardEntriesFirst(plist::Array());
}

// Negative, 0, positive: a comes before, is alike, comes after b.
int compareByRule(const Dictionary& a, const Dictionary& b) {
  const auto zero = [](const Dictionary& entry, const char* key) { return entry.uint16For(key) == 0; };
  const auto isWildcard = [&](const Dictionary& entry) {
    return zero(entry, "device vendor id") && zero(entry, "device product id") && zero(entry, "dict version");
  };
  if (zero(b, "device vendor id") && zero(b, "device product id")) {
    return static_cast<int>(isWildcard(b)) - static_cast<int>(isWildcard(a));
  }
  return isWildcard(a) ? -1 : 0;
}

RC_GTEST_PROP(SortSettings, LeavesNoPairThatTheComparisonWouldTurnRound, ()) {
  const auto entries = (*testing::arbitraryDocument()).arrayFor("devices");
  for (std::size_t i = 0; i < entries.count(); i += 3) {
    entries.at(i).asDictionary().set("dict version", 0);
  }
  const auto count = entries.count();
  sortWildcardEntriesFirst(entries);
  RC_ASSERT(entries.count() == count);
  for (std::size_t i = 0; i < entries.count(); ++i) {
    for (std::size_t k = i + 1; k < entries.count(); ++k) {
      RC_ASSERT(compareByRule(entries.at(i).asDictionary(), entries.at(k).asDictionary()) <= 0);
    }
  }
}

}  // namespace
}  // namespace veltrix
