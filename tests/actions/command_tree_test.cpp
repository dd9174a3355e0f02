#include "actions/command_tree.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <vector>

#include "tests/support/arbitrary_settings.h"
#include "tests/support/settings_documents.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using plist::Array;
using plist::Value;
using testing::arrayOf;
using testing::dictionaryOf;
using ::testing::ElementsAre;
using ::testing::Eq;
using ::testing::Optional;

constexpr std::uint32_t kOldSystem = 0x1060;
constexpr std::uint32_t kFirstNewSystem = 0x1070;

// Marks what went through the look-up.
std::string marked(std::string_view key) {
  return "<" + std::string(key) + ">";
}

Value command(int code, const char* name) {
  return dictionaryOf({{"command", code}, {"name", name}});
}

Value category(const char* title, const Array& commands) {
  return dictionaryOf({{"category", title}, {"commands", commands}});
}

Array snippetsNamed(std::initializer_list<const char*> names) {
  auto snippets = Array::create();
  for (const char* name : names) {
    snippets.append(dictionaryOf({{"name", name}, {"text", "text"}}));
  }
  return snippets;
}

// Two categories, titles of older systems, both commands that belong to some systems only, a command twice.
Array sampleTree() {
  return arrayOf(
      {dictionaryOf({{"category", "Clicks"},
                     {"category106", "Older Clicks"},
                     {"commands", arrayOf({command(1, "Click"), command(136, "Old Only"),
                                           command(107, "New Only"), command(35, "Copy")})}}),
       category("More",
                arrayOf({dictionaryOf({{"command", 35}, {"name", "Copy Again"}, {"name106", "Older Copy"}}),
                         command(182, "Text snippet 3")}))});
}

std::vector<std::int32_t> codesOf(const CommandTree& tree, std::int32_t category) {
  std::vector<std::int32_t> codes(static_cast<std::size_t>(tree.commandCount(category)));
  for (std::int32_t row = 0; row < tree.commandCount(category); ++row) {
    codes[static_cast<std::size_t>(row)] = tree.commandAt(category, row);
  }
  return codes;
}

// What every row of the tree shows.
std::vector<std::string> titlesOf(const CommandTree& tree, const Array& snippets) {
  std::vector<std::string> titles;
  for (std::int32_t index = 0; index < tree.categoryCount(); ++index) {
    titles.push_back(tree.categoryTitle(index, marked));
    for (std::int32_t row = 0; row < tree.commandCount(index); ++row) {
      titles.push_back(tree.commandTitle(index, row, snippets, marked));
    }
  }
  return titles;
}

TEST(CommandTree, NewerSystemsList107AndNot136) {
  const CommandTree tree(sampleTree(), kFirstNewSystem);
  EXPECT_THAT(codesOf(tree, 0), ElementsAre(1, 107, 35));
  EXPECT_EQ(tree.categoryTitle(0, marked), "<Clicks>");
  EXPECT_EQ(tree.commandTitle(1, 0, {}, marked), "<Copy Again>");
}

TEST(CommandTree, OlderSystemsList136AndNot107AndShowTheTitlesForThem) {
  for (const std::uint32_t version : {kOldSystem, kFirstNewSystem - 1, 0x1000U, 0U}) {
    const CommandTree tree(sampleTree(), version);
    EXPECT_THAT(codesOf(tree, 0), ElementsAre(1, 136, 35)) << version;
    EXPECT_EQ(tree.categoryTitle(0, marked), "<Older Clicks>");
    EXPECT_EQ(tree.categoryTitle(1, marked), "<More>");
    EXPECT_EQ(tree.commandTitle(1, 0, {}, marked), "<Older Copy>");
  }
}

TEST(CommandTree, AnEmptyOrUnusableTitleForOlderSystemsChangesNothing) {
  const Array categories = arrayOf({dictionaryOf(
      {{"category", "Clicks"},
       {"category106", ""},
       {"commands", arrayOf({dictionaryOf({{"command", 1}, {"name", "Click"}, {"name106", 106}}),
                             dictionaryOf({{"command", 2}, {"name", "Right"}, {"name106", ""}})})}})});
  const CommandTree tree(categories, kOldSystem);
  EXPECT_THAT(titlesOf(tree, {}), ElementsAre("<Clicks>", "<Click>", "<Right>"));
}

TEST(CommandTree, EveryHiddenCommandGoesAndAnEmptiedCategoryStays) {
  const Array categories = arrayOf(
      {category("Pair", arrayOf({command(136, "a"), command(136, "b")})), category("Rest", arrayOf())});
  const CommandTree tree(categories, kFirstNewSystem);
  EXPECT_EQ(tree.categoryCount(), 2);
  EXPECT_EQ(tree.commandCount(0), 0);
  EXPECT_EQ(tree.categoryTitle(0, marked), "<Pair>");
}

TEST(CommandTree, AdjustsACopyAndLeavesTheOriginal) {
  const Array categories = sampleTree();
  const CommandTree tree(categories, kOldSystem);
  EXPECT_TRUE(plist::equal(categories, sampleTree()));
  EXPECT_FALSE(tree.categories().sameAs(categories));
}

TEST(CommandTree, FindsTheFirstOfTwoPlaces) {
  const auto place = CommandTree(sampleTree(), kFirstNewSystem).find(35, {}, marked);
  ASSERT_TRUE(place);
  EXPECT_EQ(place->categoryIndex, 0);
  EXPECT_EQ(place->commandIndex, 2);
  EXPECT_THAT(place->categoryTitle, Optional(Eq("Clicks")));
  EXPECT_THAT(place->commandTitle, Optional(Eq("Copy")));
}

TEST(CommandTree, FindsNothingForCommandsThatAreNotThere) {
  const CommandTree tree(sampleTree(), kFirstNewSystem);
  for (const std::int32_t code : {0, 2, 136, -1, 0x10000 + 1}) {
    EXPECT_FALSE(tree.find(code, {}, marked)) << code;
  }
}

TEST(CommandTree, FindsNothingInAnEmptyTree) {
  EXPECT_FALSE(CommandTree(Array(), kFirstNewSystem).find(0, {}, marked));
  EXPECT_FALSE(CommandTree(Array::create(), kOldSystem).find(1, {}, marked));
}

TEST(CommandTree, ASnippetIsFoundUnderItsOwnName) {
  const CommandTree tree(sampleTree(), kFirstNewSystem);
  EXPECT_THAT(tree.find(182, snippetsNamed({"", "", "Greeting"}), marked)->commandTitle,
              Optional(Eq("Greeting")));
  EXPECT_THAT(tree.find(182, snippetsNamed({"", "", "Snippet 3"}), marked)->commandTitle,
              Optional(Eq("<Snippet> 3")));
}

TEST(CommandTree, ASnippetWithoutANameKeepsTheTitleOfItsCommand) {
  const CommandTree tree(sampleTree(), kFirstNewSystem);
  for (const Array& snippets :
       {Array(), Array::create(), snippetsNamed({"a", "b"}), snippetsNamed({"", "", ""}), arrayOf({1, 2, 3}),
        arrayOf({1, 2, dictionaryOf({{"name", 3}})})}) {
    EXPECT_THAT(tree.find(182, snippets, marked)->commandTitle, Optional(Eq("Text snippet 3")));
    EXPECT_EQ(tree.commandTitle(1, 1, snippets, marked), "<Text snippet 3>");
  }
}

TEST(CommandTree, ShownTitlesAreLocalisedSnippetNamesToo) {
  const CommandTree tree(sampleTree(), kFirstNewSystem);
  EXPECT_THAT(
      titlesOf(tree, snippetsNamed({"", "", "Greeting"})),
      ElementsAre("<Clicks>", "<Click>", "<New Only>", "<Copy>", "<More>", "<Copy Again>", "<Greeting>"));
}

TEST(CommandTree, IndicesOutOfRangeReadAsNothing) {
  const CommandTree tree(sampleTree(), kFirstNewSystem);
  for (const std::int32_t index : {-1, 2, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(tree.commandCount(index), 0);
    EXPECT_EQ(tree.commandAt(index, 0), 0);
    EXPECT_EQ(tree.commandAt(1, index), 0);
    EXPECT_EQ(tree.categoryTitle(index, marked), "<>");
    EXPECT_EQ(tree.commandTitle(1, index, {}, marked), "<>");
  }
}

TEST(CommandTree, ElementsOfWrongTypesKeepTheirRowsAndReadAsNothing) {
  const Array categories =
      arrayOf({"text", category("Real", arrayOf({1, "text", arrayOf({}), command(5, "Five")})),
               dictionaryOf({{"category", 7}, {"commands", "none"}}),
               dictionaryOf({{"category", "Odd"},
                             {"commands", arrayOf({dictionaryOf({{"command", "6"}, {"name", 6}})})}})});
  const CommandTree tree(categories, kFirstNewSystem);
  EXPECT_THAT(titlesOf(tree, {}),
              ElementsAre("<>", "<Real>", "<>", "<>", "<>", "<Five>", "<>", "<Odd>", "<>"));
  EXPECT_FALSE(tree.find(0, {}, marked));
  EXPECT_EQ(tree.find(5, {}, marked)->commandIndex, 3);
  const auto odd = tree.find(6, {}, marked);
  ASSERT_TRUE(odd);
  EXPECT_FALSE(odd->commandTitle);
  EXPECT_EQ(odd->categoryIndex, 3);
}

TEST(CommandTree, ACommandWithoutACodeIsFoundAsZeroAndOtherRowsAreNot) {
  const auto codeless = dictionaryOf({{"name", "Codeless"}});
  const Array categories =
      arrayOf({category("First", arrayOf({"text"})), category("Second", arrayOf({codeless}))});
  const auto place = CommandTree(categories, kFirstNewSystem).find(0, {}, marked);
  ASSERT_TRUE(place);
  EXPECT_EQ(place->categoryIndex, 1);
  EXPECT_THAT(place->commandTitle, Optional(Eq("Codeless")));
}

TEST(CommandTree, AMissingOrUnreadableResourceIsAnEmptyTree) {
  const testing::TemporaryFolder folder;
  EXPECT_EQ(CommandTree::load(Bundle(folder / "none"), kFirstNewSystem).categoryCount(), 0);
  testing::writeFile(folder / "Assignments.plist", "<plist");
  EXPECT_EQ(CommandTree::load(Bundle(folder / ""), kFirstNewSystem).categoryCount(), 0);
  testing::writeFile(folder / "Assignments.plist", "<plist><dict/></plist>");
  const auto tree = CommandTree::load(Bundle(folder / ""), kFirstNewSystem);
  EXPECT_EQ(tree.categoryCount(), 0);
  EXPECT_FALSE(tree.find(1, {}, marked));
}

TEST(CommandTree, ATreeThatHoldsItselfIsEmpty) {
  Array categories = Array::create();
  categories.append(categories);
  EXPECT_EQ(CommandTree(categories, kOldSystem).categoryCount(), 0);
  categories.remove(0);
}

TEST(SnippetName, AnUntouchedNameReadsInTheUsersLanguage) {
  const Array snippets = snippetsNamed({"Snippet 3", "Text snippet 2", "Snippet 3"});
  EXPECT_THAT(snippetName(snippets, 2, marked), Optional(Eq("<Snippet> 3")));
  EXPECT_THAT(snippetName(snippets, 1, marked), Optional(Eq("<Snippet> 2")));
}

TEST(SnippetName, TheDefaultNameOfAnotherSnippetIsANameOfItsOwn) {
  EXPECT_THAT(snippetName(snippetsNamed({"Snippet 3"}), 0, marked), Optional(Eq("Snippet 3")));
  EXPECT_THAT(snippetName(snippetsNamed({"Snippet 01"}), 0, marked), Optional(Eq("Snippet 01")));
  EXPECT_THAT(snippetName(snippetsNamed({"snippet 1"}), 0, marked), Optional(Eq("snippet 1")));
  EXPECT_THAT(snippetName(snippetsNamed({""}), 0, marked), Optional(Eq("")));
}

TEST(SnippetName, ThereIsNoneOutsideTheListOrWithoutAString) {
  const Array snippets =
      arrayOf({dictionaryOf({{"text", "text"}}), dictionaryOf({{"name", 1}}), "Snippet 3"});
  for (const std::int32_t index : {0, 1, 2, 3, -1, 2147483647}) {
    EXPECT_FALSE(snippetName(snippets, index, marked)) << index;
  }
  EXPECT_FALSE(snippetName({}, 0, marked));
}

// A category's commands as pairs of keys and values; the property below builds trees of them.
using CategorySketch = std::vector<testing::Pairs>;

Array treeFrom(const std::vector<CategorySketch>& sketches) {
  auto categories = Array::create();
  for (const auto& sketch : sketches) {
    auto commands = Array::create();
    for (const auto& pairs : sketch) {
      commands.append(testing::dictionaryFrom(pairs));
    }
    categories.append(category("Title", commands));
  }
  return categories;
}

RC_GTEST_PROP(CommandTreeProperty, FindGivesThePlaceThatAWalkOverTheRowsFindsFirst, ()) {
  constexpr int kMostRows = 8;
  const auto keys = std::vector<std::string>{"command", "command", "name", "name106"};
  const auto sketches = *testing::atMost<std::vector<CategorySketch>>(
      kMostRows, testing::atMost<CategorySketch>(kMostRows, testing::arbitraryPairs(keys)));
  const CommandTree tree(treeFrom(sketches), *rc::gen::element(kOldSystem, kFirstNewSystem));
  const auto code = *rc::gen::inRange<std::int32_t>(-2, 300);
  const auto place = tree.find(code, {}, marked);
  for (std::int32_t index = 0; index < tree.categoryCount(); ++index) {
    const auto codes = codesOf(tree, index);
    for (std::size_t row = 0; row < codes.size(); ++row) {
      if (codes[row] == code) {
        RC_ASSERT(place);
        RC_ASSERT(place->categoryIndex == index);
        RC_ASSERT(place->commandIndex == static_cast<std::int32_t>(row));
        return;
      }
    }
  }
  RC_ASSERT(!place);
}

}  // namespace
}  // namespace veltrix
