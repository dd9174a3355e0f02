#include "ctl/document_changes.h"

#include <gmock/gmock.h>

#include "tests/support/settings_documents.h"

namespace veltrix::ctl {
namespace {

using plist::Value;
using testing::arrayOf;
using testing::dictionaryOf;

std::vector<std::string> placesBetween(const Value& before, const Value& after) {
  std::vector<std::string> places;
  for (const auto& change : changesBetween(before, after)) {
    places.push_back(change.place);
  }
  return places;
}

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(DocumentChanges, EqualDocumentsHaveNone) {
  EXPECT_THAT(placesBetween(dictionaryOf({{"a", 1}, {"b", arrayOf({2})}}),
                            dictionaryOf({{"b", arrayOf({2})}, {"a", 1}})),
              IsEmpty());
}

TEST(DocumentChanges, StandInTheOrderOfTheOldDocumentWithNewKeysBehind) {
  EXPECT_THAT(placesBetween(dictionaryOf({{"gone", 1}, {"same", 2}, {"other", 3}}),
                            dictionaryOf({{"new", 1}, {"other", 4}, {"same", 2}})),
              ElementsAre("gone", "other", "new"));
}

TEST(DocumentChanges, GoDownToSingleValues) {
  EXPECT_THAT(placesBetween(dictionaryOf({{"a", arrayOf({1, dictionaryOf({{"b", 1}, {"c", 2}})})}}),
                            dictionaryOf({{"a", arrayOf({1, dictionaryOf({{"b", 3}, {"c", 2}}), "x"})}})),
              ElementsAre("a/1/b", "a/2"));
  EXPECT_THAT(placesBetween(dictionaryOf(), dictionaryOf({{"a", dictionaryOf({{"b", 1}, {"c", 2}})}})),
              ElementsAre("a/b", "a/c"));
}

TEST(DocumentChanges, CarryBothValues) {
  const auto changes = changesBetween(dictionaryOf({{"a", 1}, {"b", 2}}), dictionaryOf({{"a", "x"}}));
  ASSERT_EQ(changes.size(), 2U);
  EXPECT_EQ(changes[0].before.asInt64(), 1);
  EXPECT_EQ(changes[0].after.asString(), "x");
  EXPECT_TRUE(changes[1].after.isMissing());
}

TEST(DocumentChanges, ContainersWithNothingInThemAreValues) {
  EXPECT_THAT(placesBetween(dictionaryOf(), dictionaryOf({{"a", dictionaryOf()}, {"b", arrayOf()}})),
              ElementsAre("a", "b"));
}

TEST(DocumentChanges, AnotherKindOfValueIsOneChange) {
  EXPECT_THAT(placesBetween(dictionaryOf({{"a", arrayOf({1})}, {"b", dictionaryOf({{"c", 1}})}, {"d", true}}),
                            dictionaryOf({{"a", dictionaryOf({{"c", 1}})}, {"b", 3}, {"d", 1}})),
              ElementsAre("a", "b", "d"));
}

}  // namespace
}  // namespace veltrix::ctl
