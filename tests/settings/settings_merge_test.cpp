#include "settings/settings_merge.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>
#include <chrono>

#include "settings/deep_copy.h"
#include "tests/support/arbitrary_settings.h"
#include "tests/support/settings_documents.h"

namespace veltrix {
namespace {

using plist::Array;
using plist::Dictionary;
using testing::arrayOf;
using testing::dictionaryOf;
using testing::documentOf;
using testing::entryOf;

Dictionary deviceAt(const Dictionary& document, std::size_t index) {
  return document.arrayFor("devices").at(index).asDictionary();
}

Dictionary entryWithParam(std::int64_t product, int triggerTime) {
  auto entry = entryOf(1, product);
  entry.set("param", dictionaryOf({{"triggerTime", triggerTime}}));
  return entry;
}

TEST(UsableDocument, NeedsAVersionAboveOneAndAnEntry) {
  EXPECT_TRUE(isUsableDocument(documentOf({entryOf(1, 2)})));
  EXPECT_FALSE(isUsableDocument(documentOf({})));
  EXPECT_FALSE(isUsableDocument(dictionaryOf({{"version", 2}})));
  EXPECT_FALSE(isUsableDocument(dictionaryOf({{"version", 2}, {"devices", dictionaryOf()}})));
  EXPECT_FALSE(isUsableDocument(Dictionary()));
  auto document = documentOf({entryOf(1, 2)});
  for (const plist::Value& version : {plist::Value(1), plist::Value(0), plist::Value(-5), plist::Value(true),
                                      plist::Value(1.9), plist::Value("one"), plist::Value()}) {
    document.set("version", version);
    EXPECT_FALSE(isUsableDocument(document));
  }
  for (const plist::Value& version : {plist::Value(3), plist::Value(2.5), plist::Value("2")}) {
    document.set("version", version);
    EXPECT_TRUE(isUsableDocument(document));
  }
}

TEST(Merge, AppendsTheEntryOfAnotherVersionRangeAtTheEnd) {
  const auto user = documentOf({entryOf(1, 0x2041, 0x0100, 0x0106), entryOf(1, 0x1020)});
  mergeFactorySettings(user, documentOf({entryOf(1, 0x2041, 0x0107, 0), entryOf(1, 0x2041, 0x0100, 0x0106)}));
  ASSERT_EQ(user.arrayFor("devices").count(), 3U);
  EXPECT_EQ(deviceAt(user, 0).int32For("device version max"), 0x0106);
  EXPECT_EQ(deviceAt(user, 2).int32For("device version min"), 0x0107);
}

TEST(Merge, DoesNotCompareVendors) {
  const auto user = documentOf({entryOf(1, 2)});
  mergeFactorySettings(user, documentOf({entryOf(9, 2)}));
  ASSERT_EQ(user.arrayFor("devices").count(), 1U);
  EXPECT_EQ(deviceAt(user, 0).int32For("device vendor id"), 1);
}

TEST(Merge, ComparesWholeSignedNumbers) {
  const auto user = documentOf({entryOf(1, 0x10002), entryOf(1, -1)});
  mergeFactorySettings(user, documentOf({entryOf(1, 2), entryOf(1, 0xFFFFFFFF)}));
  EXPECT_EQ(user.arrayFor("devices").count(), 3U);
}

TEST(Merge, GivesParametersToAnEntryThatLacksThem) {
  const auto user = documentOf({entryOf(1, 2)});
  mergeFactorySettings(user, documentOf({entryWithParam(2, 7)}));
  EXPECT_EQ(deviceAt(user, 0).dictionaryFor("param").int32For("triggerTime"), 7);
}

TEST(Merge, LeavesTheParametersOfAnEntryAlone) {
  const auto user = documentOf({entryWithParam(2, 3)});
  mergeFactorySettings(user, documentOf({entryWithParam(2, 7)}));
  EXPECT_EQ(deviceAt(user, 0).dictionaryFor("param").int32For("triggerTime"), 3);
}

TEST(Merge, LeavesParametersOfTheWrongTypeAlone) {
  auto entry = entryOf(1, 2);
  entry.set("param", "mine");
  const auto user = documentOf({entry});
  mergeFactorySettings(user, documentOf({entryWithParam(2, 7)}));
  EXPECT_EQ(deviceAt(user, 0).stringFor("param"), "mine");
}

TEST(Merge, ChangesOnlyTheFirstEntryOfTheSameIds) {
  const auto user = documentOf({entryOf(1, 2), entryOf(1, 2)});
  mergeFactorySettings(user, documentOf({entryWithParam(2, 7)}));
  EXPECT_TRUE(deviceAt(user, 0).contains("param"));
  EXPECT_FALSE(deviceAt(user, 1).contains("param"));
}

TEST(Merge, SeesTheEntriesThatItHasAppended) {
  const auto user = documentOf({entryOf(1, 5)});
  mergeFactorySettings(user, documentOf({entryOf(1, 2), entryWithParam(2, 7)}));
  ASSERT_EQ(user.arrayFor("devices").count(), 2U);
  EXPECT_EQ(deviceAt(user, 1).dictionaryFor("param").int32For("triggerTime"), 7);
}

TEST(Merge, PassesOverElementsThatAreNoEntries) {
  const auto user = documentOf({"text", entryOf(1, 2)});
  mergeFactorySettings(user, documentOf({5, entryWithParam(2, 7), arrayOf()}));
  ASSERT_EQ(user.arrayFor("devices").count(), 2U);
  EXPECT_TRUE(deviceAt(user, 1).contains("param"));
}

TEST(Merge, TakesTheSnippetsOnlyWhenThereAreNone) {
  const auto factorySnippets = arrayOf({dictionaryOf({{"name", "factory"}})});
  auto factory = documentOf({});
  factory.set("snippets", factorySnippets);
  auto user = documentOf({entryOf(1, 2)});
  mergeFactorySettings(user, factory);
  EXPECT_TRUE(plist::equal(user.get("snippets"), factorySnippets));
  user.set("snippets", arrayOf());
  mergeFactorySettings(user, factory);
  EXPECT_EQ(user.arrayFor("snippets").count(), 0U);
}

TEST(Merge, AddsNoOtherKeyOfTheFactorySettings) {
  auto factory = documentOf({});
  factory.set("version", 9);
  factory.set("paramUI", true);
  const auto user = documentOf({entryOf(1, 2)});
  mergeFactorySettings(user, factory);
  EXPECT_EQ(user.int32For("version"), 2);
  EXPECT_FALSE(user.contains("paramUI"));
}

// The definition, one factory entry after the other over the whole list.
void mergeBySearching(Dictionary user, const Dictionary& factory) {
  Array devices = user.arrayFor("devices");
  for (const auto& element : factory.arrayFor("devices").items()) {
    const Dictionary factoryEntry = element.asDictionary();
    Dictionary found;
    for (std::size_t i = 0; i < devices.count() && !found; ++i) {
      const Dictionary entry = devices.at(i).asDictionary();
      bool same = true;
      for (const char* key : {"device product id", "device version min", "device version max"}) {
        same = same && entry.int32For(key) == factoryEntry.int32For(key);
      }
      found = same ? entry : found;
    }
    if (!found) {
      devices.append(factoryEntry);
    } else if (!found.contains("param") && factoryEntry.contains("param")) {
      found.set("param", factoryEntry.get("param"));
    }
  }
  if (!user.contains("snippets") && factory.contains("snippets")) {
    user.set("snippets", factory.get("snippets"));
  }
}

RC_GTEST_PROP(Merge, DoesWhatSearchingTheListForEachEntryWouldDo, ()) {
  const auto user = *testing::arbitraryDocument();
  const auto factory = *testing::arbitraryDocument();
  const auto expected = mutableDeepAutoreleasedCopy(user);
  mergeBySearching(expected, mutableDeepAutoreleasedCopy(factory));
  mergeFactorySettings(user, factory);
  RC_ASSERT(plist::equal(user, expected));
}

RC_GTEST_PROP(Merge, KeepsEveryEntryOfTheUser, ()) {
  const auto user = *testing::arbitraryDocument();
  const auto before = mutableDeepAutoreleasedCopy(user);
  mergeFactorySettings(user, *testing::arbitraryDocument());
  const auto devicesBefore = before.arrayFor("devices");
  for (std::size_t i = 0; i < devicesBefore.count(); ++i) {
    const auto now = mutableDeepAutoreleasedCopy(deviceAt(user, i));
    if (!deviceAt(before, i).contains("param")) {
      plist::Dictionary(now).remove("param");
    }
    RC_ASSERT(plist::equal(now, devicesBefore.at(i)));
  }
  for (const auto& key : before.keys()) {
    RC_ASSERT(key == "devices" || plist::equal(user.get(key), before.get(key)));
  }
}

RC_GTEST_PROP(Merge, ChangesNothingTheSecondTime, ()) {
  const auto user = *testing::arbitraryDocument();
  const auto factory = *testing::arbitraryDocument();
  mergeFactorySettings(user, mutableDeepAutoreleasedCopy(factory));
  const auto once = mutableDeepAutoreleasedCopy(user);
  mergeFactorySettings(user, factory);
  RC_ASSERT(plist::equal(user, once));
}

// Searching the list would need thousands of millions of steps here.
TEST(Merge, TakesTimeInProportionToTheEntries) {
  constexpr int kEntries = 50000;
  const auto user = documentOf({});
  const auto factory = documentOf({});
  for (int i = 0; i < kEntries; ++i) {
    user.arrayFor("devices").append(entryOf(1, i));
    factory.arrayFor("devices").append(entryWithParam(i + kEntries / 2, i));
  }
  const auto start = std::chrono::steady_clock::now();
  mergeFactorySettings(user, factory);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(user.arrayFor("devices").count(), static_cast<std::size_t>(kEntries * 3 / 2));
}

}  // namespace
}  // namespace veltrix
