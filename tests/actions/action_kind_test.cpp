#include "actions/action_kind.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace veltrix {
namespace {

std::set<std::int32_t> codesOf(ActionKind kind) {
  std::set<std::int32_t> codes;
  for (std::int32_t code = 0; code <= 0xFFFF; ++code) {
    if (actionKind(code) == kind) {
      codes.insert(code);
    }
  }
  return codes;
}

using Codes = std::set<std::int32_t>;

TEST(ActionKind, EveryCodeHasTheKindOfItsClass) {
  EXPECT_EQ(codesOf(ActionKind::kClick), (Codes{1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 15, 16, 17, 18}));
  EXPECT_EQ(codesOf(ActionKind::kKeystroke), Codes{10});
  EXPECT_EQ(codesOf(ActionKind::kSnippet), (Codes{180, 181, 182, 183, 184, 185, 186, 187, 188, 189}));
  EXPECT_EQ(codesOf(ActionKind::kScroll), (Codes{20, 21, 22, 23}));
  EXPECT_EQ(codesOf(ActionKind::kApplication), Codes{71});
  EXPECT_EQ(codesOf(ActionKind::kItem), Codes{70});
  EXPECT_EQ(codesOf(ActionKind::kUrl), Codes{72});
  EXPECT_EQ(codesOf(ActionKind::kScript), Codes{73});
  EXPECT_EQ(codesOf(ActionKind::kPlain).size(), 0x10000U - 15 - 1 - 10 - 4 - 4);
}

TEST(ActionKind, LooksAtTheLow16BitsOnly) {
  EXPECT_EQ(actionKind(0x10000 + 10), ActionKind::kKeystroke);
  EXPECT_EQ(actionKind(-0x10000 + 1), ActionKind::kClick);
  EXPECT_EQ(actionKind(-1), ActionKind::kPlain);
  EXPECT_EQ(actionKind(std::numeric_limits<std::int32_t>::min()), ActionKind::kPlain);
}

}  // namespace
}  // namespace veltrix
