#include "editor/command_browser.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include "editor/browser_column.h"
#include "tests/support/command_trees.h"

namespace veltrix {
namespace {

using testing::makeCommandTree;
using testing::makeTreeOfAllKinds;

constexpr std::uint32_t kSystem = 0x1090;

class CommandBrowserTest : public ::testing::Test {
 protected:
  CommandBrowserTest() : fTree(makeTreeOfAllKinds(), kSystem), fBrowsed(&fBrowser, &CommandBrowser::browsed) {
    fBrowser.setTree(&fTree,
                     [](std::string_view key) { return key == "Keys" ? "Tasten" : std::string(key); });
    fBrowser.show();
    QApplication::setActiveWindow(&fBrowser);
    QCoreApplication::processEvents();
  }

  BrowserColumn& column(int number) { return *fBrowser.column(number); }

  void click(int number, int row) {
    BrowserColumn& one = column(number);
    QTest::mouseClick(one.viewport(), Qt::LeftButton, {},
                      one.visualRect(one.model()->index(row, 0)).center());
  }

  void select(int category, int row) {
    fBrowser.selectRow(CommandBrowser::kCategories, category);
    fBrowser.selectRow(CommandBrowser::kCommands, row);
  }

  CommandTree fTree;
  CommandBrowser fBrowser;
  QSignalSpy fBrowsed;
};

TEST_F(CommandBrowserTest, ShowsCategoriesAndNoCommandsAtFirst) {
  EXPECT_EQ(column(0).rowCount(), 7);
  EXPECT_EQ(column(0).title(1), "Tasten");
  EXPECT_EQ(column(1).rowCount(), 0);
  EXPECT_EQ(fBrowser.selectedRow(0), -1);
  EXPECT_EQ(fBrowser.selectedColumn(), -1);
}

TEST_F(CommandBrowserTest, ShowsTheCommandsOfTheSelectedCategory) {
  select(3, 2);
  EXPECT_EQ(column(1).rowCount(), 4);
  EXPECT_EQ(column(1).title(2), "Address");
  EXPECT_EQ(fBrowser.selectedCommand(), 72);
  EXPECT_TRUE(fBrowsed.isEmpty());
}

TEST_F(CommandBrowserTest, CountsTheFirstRowWhereNothingIsSelected) {
  EXPECT_EQ(fBrowser.selectedCommand(), 1);
  fBrowser.selectRow(CommandBrowser::kCategories, 1);
  EXPECT_EQ(fBrowser.selectedCommand(), 10);
}

TEST_F(CommandBrowserTest, ACategoryWithoutCommandsHasCommandZero) {
  fBrowser.selectRow(CommandBrowser::kCategories, 5);
  EXPECT_EQ(column(1).rowCount(), 0);
  EXPECT_EQ(fBrowser.selectedCommand(), 0);
}

TEST_F(CommandBrowserTest, TellsInWhichColumnARowWasChosen) {
  click(0, 2);
  EXPECT_EQ(fBrowsed.count(), 1);
  EXPECT_EQ(fBrowser.selectedColumn(), 0);
  EXPECT_EQ(column(1).title(0), "Scroll Up");
  fBrowsed.clear();
  click(1, 1);
  EXPECT_EQ(fBrowsed.count(), 1);
  EXPECT_EQ(fBrowser.selectedColumn(), 1);
  EXPECT_EQ(fBrowser.selectedCommand(), 23);
}

TEST_F(CommandBrowserTest, NamesSnippetsAsTheirOwnerDid) {
  plist::Array snippets = plist::Array::create();
  plist::Dictionary greeting = plist::Dictionary::create();
  greeting.set("name", "Greeting");
  snippets.append(greeting);
  fBrowser.setSnippets(snippets);
  select(4, 0);
  EXPECT_EQ(column(1).title(0), "Greeting");
  EXPECT_EQ(column(1).title(1), "Text 3");
  greeting.set("name", "Farewell");
  fBrowser.refreshTitles();
  EXPECT_EQ(column(1).title(0), "Farewell");
  EXPECT_EQ(fBrowser.selectedRow(1), 0);
}

TEST_F(CommandBrowserTest, ArrowKeysLeadFromOneColumnToTheOther) {
  select(0, 1);
  fBrowser.focusCommands();
  EXPECT_TRUE(column(1).hasFocus());
  QTest::keyClick(&column(1), Qt::Key_Left);
  EXPECT_TRUE(column(0).hasFocus());
  QTest::keyClick(&column(0), Qt::Key_Left);
  EXPECT_TRUE(column(0).hasFocus());
  QTest::keyClick(&column(0), Qt::Key_Right);
  EXPECT_TRUE(column(1).hasFocus());
  EXPECT_TRUE(fBrowsed.isEmpty());
}

TEST_F(CommandBrowserTest, TheKeysGoToTheCategoriesWhileNoCommandIsShown) {
  fBrowser.focusCommands();
  EXPECT_TRUE(column(0).hasFocus());
  EXPECT_EQ(fBrowser.selectedRow(0), -1);
}

TEST_F(CommandBrowserTest, HasRoomForEveryTitle) {
  const QString longest = "A command whose title is longer";
  const CommandTree tree(makeCommandTree({{"A category whose title is long", {{1, "A"}}},
                                          {"Other", {{2, longest.toUtf8().constData()}}}}),
                         kSystem);
  fBrowser.setTree(&tree, [](std::string_view key) { return std::string(key); });
  for (const int number : {0, 1}) {
    select(number, 0);
    const QString title = number == 0 ? column(0).title(0) : longest;
    EXPECT_GT(column(number).sizeHint().width(), column(number).fontMetrics().horizontalAdvance(title));
    EXPECT_GE(fBrowser.sizeHint().width(), column(0).sizeHint().width() + column(1).sizeHint().width());
  }
}

TEST_F(CommandBrowserTest, AnEmptyTreeIsAnEmptyBrowser) {
  const CommandTree empty(plist::Array(), kSystem);
  fBrowser.setTree(&empty, [](std::string_view key) { return std::string(key); });
  EXPECT_EQ(column(0).rowCount(), 0);
  EXPECT_EQ(fBrowser.selectedCommand(), 0);
  select(0, 0);
  EXPECT_EQ(fBrowser.selectedRow(0), -1);
}

}  // namespace
}  // namespace veltrix
