#include "helper/jump/default_button.h"

#include <gtest/gtest.h>

#include "tests/helper/jump/fake_parts.h"

namespace veltrix {
namespace {

using testing::defaultButtonAt;
using testing::FakePart;
using testing::groupOf;
using testing::plainButton;

class DefaultButton : public ::testing::Test {
 protected:
  // The left edge of the button that is found, nothing when there is none.
  std::optional<std::int32_t> find(const FakePart& dialog, const SearchLimits& limits = {}) {
    testing::FakeAccessible root(dialog, &fQuestions);
    const auto button = findDefaultButton(root, limits, [this] { return fQuestions >= fMostQuestions; });
    return button != nullptr ? std::optional(button->place()->x) : std::nullopt;
  }

  int fQuestions = 0;
  int fMostQuestions = 1'000'000;
};

FakePart nested(FakePart part, int levels) {
  for (int i = 0; i < levels; ++i) {
    FakePart group;
    group.parts.push_back(std::move(part));
    part = std::move(group);
  }
  return part;
}

TEST_F(DefaultButton, IsFoundAmongOthers) {
  EXPECT_EQ(find(groupOf({plainButton(), groupOf({plainButton(), defaultButtonAt({5, 0, 1, 1})})})), 5);
}

TEST_F(DefaultButton, ThereMayBeNone) {
  EXPECT_EQ(find(groupOf({plainButton(), groupOf({plainButton()})})), std::nullopt);
  EXPECT_EQ(find(groupOf({})), std::nullopt);
}

TEST_F(DefaultButton, TheOneNearerToTheTopComesFirst) {
  EXPECT_EQ(find(groupOf({groupOf({defaultButtonAt({9, 0, 1, 1})}), defaultButtonAt({3, 0, 1, 1})})), 3);
}

TEST_F(DefaultButton, IsNotLookedForInTextsAndTables) {
  FakePart table = groupOf({defaultButtonAt({5, 0, 1, 1})});
  table.kind = AccessiblePart::Kind::kOther;
  EXPECT_EQ(find(groupOf({table})), std::nullopt);
}

TEST_F(DefaultButton, PartsThatHaveGoneArePassedOver) {
  FakePart gone = plainButton();
  gone.hasGone = true;
  EXPECT_EQ(find(groupOf({gone, defaultButtonAt({5, 0, 1, 1})})), 5);
}

TEST_F(DefaultButton, SearchEndsAtItsDepth) {
  const FakePart button = defaultButtonAt({5, 0, 1, 1});
  EXPECT_EQ(find(nested(button, 30)), 5);
  EXPECT_EQ(find(nested(button, 31)), std::nullopt);
}

TEST_F(DefaultButton, SearchEndsAfterSoManyParts) {
  std::vector<FakePart> parts(1999, plainButton());
  parts.push_back(defaultButtonAt({5, 0, 1, 1}));
  EXPECT_EQ(find(groupOf(parts)), 5);
  parts.insert(parts.begin(), plainButton());
  EXPECT_EQ(find(groupOf(parts)), std::nullopt);
}

TEST_F(DefaultButton, SearchEndsWhenTimeIsUp) {
  std::vector<FakePart> parts(1000, plainButton());
  parts.push_back(defaultButtonAt({5, 0, 1, 1}));
  fMostQuestions = 100;
  EXPECT_EQ(find(groupOf(parts)), std::nullopt);
  EXPECT_LE(fQuestions, fMostQuestions + 3);
}

}  // namespace
}  // namespace veltrix
