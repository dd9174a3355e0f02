#include "settings/deep_copy.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>

#include "tests/support/arbitrary_settings.h"
#include "tests/support/settings_documents.h"

namespace veltrix {
namespace {

using testing::arrayOf;
using testing::dictionaryOf;

TEST(DeepCopy, SharesNothingWithTheOriginal) {
  const auto inner = dictionaryOf({{"a", 1}});
  const auto original = dictionaryOf({{"inner", inner}, {"list", arrayOf({inner})}});
  const auto copy = mutableDeepAutoreleasedCopy(original);
  EXPECT_TRUE(plist::equal(copy, original));
  copy.dictionaryFor("inner").set("a", 2);
  copy.arrayFor("list").append("more");
  EXPECT_EQ(inner.int32For("a"), 1);
  EXPECT_EQ(original.arrayFor("list").count(), 1U);
}

TEST(DeepCopy, OfAContainerThatStandsTwiceHasTwo) {
  const auto inner = dictionaryOf();
  const auto copy = mutableDeepAutoreleasedCopy(arrayOf({inner, inner}));
  copy.at(0).asDictionary().set("a", 1);
  EXPECT_EQ(copy.at(1).asDictionary().count(), 0U);
}

TEST(DeepCopy, OfNothingIsNothing) {
  EXPECT_TRUE(mutableDeepAutoreleasedCopy(plist::Dictionary()).isNull());
  EXPECT_TRUE(mutableDeepAutoreleasedCopy(plist::Array()).isNull());
}

TEST(DeepCopy, OfWhatCannotBeWrittenIsNothing) {
  auto ring = dictionaryOf();
  ring.set("itself", ring);
  EXPECT_TRUE(mutableDeepAutoreleasedCopy(ring).isNull());
  EXPECT_TRUE(mutableDeepAutoreleasedCopy(arrayOf({ring})).isNull());
  ring.clear();
}

RC_GTEST_PROP(DeepCopy, IsEqualToTheOriginal, ()) {
  const auto document = *testing::arbitraryDocument();
  RC_ASSERT(plist::equal(mutableDeepAutoreleasedCopy(document), document));
}

}  // namespace
}  // namespace veltrix
