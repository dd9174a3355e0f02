#include "settings/scroll_parameters.h"

#include <gtest/gtest.h>

#include "tests/support/settings_documents.h"

namespace veltrix {
namespace {

using testing::dictionaryOf;

TEST(ScrollParameters, AreTheFiveNumbersOfTheEntry) {
  const auto entry = dictionaryOf({{"param", dictionaryOf({{"triggerTime", 100},
                                                           {"timeDecay", 120},
                                                           {"timeStop", 400},
                                                           {"countDecay", -90},
                                                           {"countStop", 3}})}});
  EXPECT_EQ(scrollParametersOf(entry),
            (ScrollParameters{
                .triggerTime = 100, .timeDecay = 120, .timeStop = 400, .countDecay = -90, .countStop = 3}));
}

TEST(ScrollParameters, EachThatIsMissingIsZero) {
  EXPECT_EQ(scrollParametersOf(plist::Dictionary()), ScrollParameters{});
  EXPECT_EQ(scrollParametersOf(dictionaryOf({{"param", 5}})), ScrollParameters{});
  const auto some = scrollParametersOf(dictionaryOf({{"param", dictionaryOf({{"timeStop", 7}})}}));
  EXPECT_EQ(some.timeStop, 7);
  EXPECT_EQ(some.countStop, 0);
}

}  // namespace
}  // namespace veltrix
