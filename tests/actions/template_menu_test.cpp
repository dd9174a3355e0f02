#include "actions/template_menu.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>
#include <string>

#include "actions/command_tree.h"

namespace veltrix {
namespace {

constexpr std::uint32_t kOldestSystem = 0x1000;
constexpr std::uint32_t kNewestSystem = 0x1090;

bool isSeparator(const TemplateItem& item) {
  return item.title == nullptr;
}

std::string unchanged(std::string_view key) {
  return std::string(key);
}

TEST(TemplateMenu, EveryItemIsACommandOfTheTreeUnderItsTitleOnEverySystem) {
  for (const std::uint32_t version : {kOldestSystem, kNewestSystem}) {
    const auto tree = CommandTree::load(Bundle::standard(), version);
    for (const auto& item : templateMenu()) {
      if (isSeparator(item) || item.tag == kEditItemTag) {
        continue;
      }
      const auto place = tree.find(item.tag, {}, unchanged);
      ASSERT_TRUE(place) << item.tag;
      EXPECT_EQ(place->commandTitle, item.title);
    }
  }
}

TEST(TemplateMenu, NoCommandTwiceOneEditItemAndNoPlaceForTheExtraItem) {
  std::multiset<std::int32_t> tags;
  for (const auto& item : templateMenu()) {
    if (!isSeparator(item)) {
      tags.insert(item.tag);
    }
  }
  EXPECT_TRUE(std::all_of(tags.begin(), tags.end(), [&](std::int32_t tag) { return tags.count(tag) == 1; }));
  EXPECT_EQ(tags.count(kEditItemTag), 1U);
  EXPECT_EQ(tags.count(kExtraItemTag), 0U);
  EXPECT_EQ(*tags.begin(), kEditItemTag);
}

TEST(TemplateMenu, OffersTheClickAndNoActionAndStaysShort) {
  const auto items = templateMenu();
  const auto offers = [&](std::int32_t tag) {
    return std::any_of(items.begin(), items.end(),
                       [tag](const TemplateItem& item) { return !isSeparator(item) && item.tag == tag; });
  };
  EXPECT_TRUE(offers(0));
  EXPECT_TRUE(offers(1));
  const auto commands =
      items.size() - static_cast<std::size_t>(std::count_if(items.begin(), items.end(), isSeparator));
  EXPECT_THAT(commands, ::testing::AllOf(::testing::Ge(18U), ::testing::Le(25U)));
}

TEST(TemplateMenu, SeparatorsStandBetweenItemsOnly) {
  const auto items = templateMenu();
  EXPECT_FALSE(isSeparator(items.front()));
  EXPECT_EQ(items.back().tag, kEditItemTag);
  EXPECT_EQ(std::adjacent_find(items.begin(), items.end(),
                               [](const TemplateItem& a, const TemplateItem& b) {
                                 return isSeparator(a) && isSeparator(b);
                               }),
            items.end());
}

}  // namespace
}  // namespace veltrix
