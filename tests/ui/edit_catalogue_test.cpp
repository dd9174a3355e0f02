// The action editor with the commands that are shipped.
#include "actions/action_kind.h"
#include "tests/support/editor_fixture.h"

namespace veltrix::testing {
namespace {

class EditCatalogueTest : public EditControllerTest {
 protected:
  EditCatalogueTest() { makeControllerOfTheCatalogue(); }

  // Calls with every place in the tree and the command there.
  template <typename Visit>
  void forEachCommand(Visit visit) const {
    const CommandTree& tree = controller->commandTree();
    for (std::int32_t category = 0; category < tree.categoryCount(); ++category) {
      for (std::int32_t row = 0; row < tree.commandCount(category); ++row) {
        visit(category, row, tree.commandAt(category, row));
      }
    }
  }
};

TEST_F(EditCatalogueTest, EveryCommandIsSelectedAndShownOnThePageOfItsKind) {
  int commands = 0;
  forEachCommand([&](std::int32_t, std::int32_t, std::int32_t command) {
    ++commands;
    showAction(makeDictionary({{"cmd", command}, {"key", 255}}), [&] {
      EXPECT_EQ(find<CommandBrowser>("outEditBrowser")->selectedCommand(), command);
      EXPECT_EQ(page(), static_cast<int>(actionKind(command))) << command;
      const BrowserColumn& rows = column(1);
      EXPECT_TRUE(rows.viewport()->rect().contains(rows.visualRect(rows.currentIndex()))) << command;
    });
  });
  EXPECT_GE(commands, 90);
}

TEST_F(EditCatalogueTest, EveryCommandCanBeChosenWithTheMouse) {
  forEachCommand([&](std::int32_t category, std::int32_t row, std::int32_t command) {
    const auto after =
        editAction(makeDictionary({{"cmd", 9999}, {"mod", 0x100}}), [&] { choose(category, row); });
    EXPECT_EQ(after.int32For("cmd"), command);
    EXPECT_EQ(after.uint32For("mod"), 0U);
    EXPECT_EQ(page(), static_cast<int>(actionKind(command))) << command;
  });
}

TEST_F(EditCatalogueTest, EveryCommandCanBeReachedWithArrowKeys) {
  const CommandTree& tree = controller->commandTree();
  editAction(makeDictionary({{"cmd", tree.commandAt(0, 0)}}), [&] {
    for (std::int32_t category = 0; category < tree.categoryCount(); ++category) {
      for (std::int32_t row = 0; row < tree.commandCount(category); ++row) {
        EXPECT_EQ(controller->vtxGetCurrentAction().int32For("cmd"), tree.commandAt(category, row));
        press(Qt::Key_Down);
      }
      press(Qt::Key_Left);
      press(Qt::Key_Down);
      press(Qt::Key_Right);
    }
  });
}

}  // namespace
}  // namespace veltrix::testing
