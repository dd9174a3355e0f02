#include "editor/item_chooser.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTest>
#include <QTimer>
#include <filesystem>

#include "tests/support/environment.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

// A panel at a folder with a file and a folder.
class ItemPanelTest : public ::testing::Test {
 protected:
  ItemPanelTest() : fHome("HOME", folder.path()) {
    testing::writeFile(folder / "notes.txt", "");
    testing::writeFile(folder / "papers/letter.txt", "");
  }

  void open(std::function<bool(const QString&)> accepts = [](const QString&) { return true; }) {
    panel = std::make_unique<ItemPanel>(nullptr, std::move(accepts));
    panel->show();
    panel->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(panel.get()));
    view = panel->findChild<QAbstractItemView*>(QStringLiteral("treeView"));
    ASSERT_NE(view, nullptr);
    ASSERT_TRUE(QTest::qWaitFor([this] { return view->model()->rowCount(view->rootIndex()) == 2; }));
  }

  QPoint placeOf(const char* name) const {
    for (int row = 0; row < view->model()->rowCount(view->rootIndex()); ++row) {
      const QModelIndex index = view->model()->index(row, 0, view->rootIndex());
      if (index.data().toString() == QLatin1String(name)) {
        return view->visualRect(index).center();
      }
    }
    ADD_FAILURE() << name << " is not shown";
    return {};
  }
  void click(const char* name) const {
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf(name));
  }
  void pressChoose() const {
    auto* buttons = panel->findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
    QTest::mouseClick(buttons->button(QDialogButtonBox::Open), Qt::LeftButton);
  }

  testing::TemporaryFolder folder;
  std::unique_ptr<ItemPanel> panel;
  QAbstractItemView* view = nullptr;

 private:
  testing::ScopedEnvironment fHome;
};

TEST_F(ItemPanelTest, AFileCanBeChosen) {
  open();
  click("notes.txt");
  pressChoose();
  EXPECT_EQ(panel->result(), QDialog::Accepted);
  EXPECT_EQ(panel->chosenPath(), folder / "notes.txt");
}

TEST_F(ItemPanelTest, AFolderCanBeChosen) {
  open();
  click("papers");
  pressChoose();
  EXPECT_EQ(panel->chosenPath(), folder / "papers");
}

TEST_F(ItemPanelTest, ADoubleClickChoosesAFile) {
  open();
  click("notes.txt");
  QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf("notes.txt"));
  EXPECT_EQ(panel->chosenPath(), folder / "notes.txt");
}

TEST_F(ItemPanelTest, ADoubleClickEntersAFolder) {
  open();
  click("papers");
  QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, placeOf("papers"));
  EXPECT_TRUE(panel->isVisible());
  EXPECT_EQ(panel->directory().absolutePath().toStdString(), folder / "papers");
  EXPECT_FALSE(panel->chosenPath());
}

TEST_F(ItemPanelTest, ReturnChoosesTheSelectedFile) {
  open();
  click("notes.txt");
  QTest::keyClick(view, Qt::Key_Return);
  EXPECT_EQ(panel->chosenPath(), folder / "notes.txt");
}

TEST_F(ItemPanelTest, OnlyOneItemCanBeSelected) {
  open();
  EXPECT_EQ(view->selectionMode(), QAbstractItemView::SingleSelection);
}

TEST_F(ItemPanelTest, APathCanBeTyped) {
  open();
  auto* field = panel->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  QTest::keyClicks(field, QString::fromStdString(folder / "papers/letter.txt"));
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(panel->chosenPath(), folder / "papers/letter.txt");
}

TEST_F(ItemPanelTest, WhatDoesNotExistIsNotChosen) {
  open();
  auto* field = panel->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  QTest::keyClicks(field, QStringLiteral("missing"));
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_TRUE(panel->isVisible());
  EXPECT_FALSE(panel->chosenPath());
}

TEST_F(ItemPanelTest, WhatIsNotAcceptedIsNotChosen) {
  open([](const QString& path) { return path.endsWith(QLatin1String("papers")); });
  click("notes.txt");
  pressChoose();
  QTest::keyClick(view, Qt::Key_Return);
  EXPECT_TRUE(panel->isVisible());
  click("papers");
  pressChoose();
  EXPECT_EQ(panel->chosenPath(), folder / "papers");
}

TEST_F(ItemPanelTest, ANameThatNoSettingsFileCanHoldIsNotChosen) {
  testing::writeFile(folder / "papers/bad\x01name", "");
  open();
  auto* field = panel->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  field->setText(QString::fromStdString(folder / "papers/bad\x01name"));
  EXPECT_EQ(panel->selectedFiles().value(0).toStdString(), folder / "papers/bad\x01name");
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_TRUE(panel->isVisible());
  EXPECT_FALSE(panel->chosenPath());
}

TEST_F(ItemPanelTest, EscapeCancels) {
  open();
  QTest::keyClick(panel.get(), Qt::Key_Escape);
  EXPECT_FALSE(panel->isVisible());
  EXPECT_FALSE(panel->chosenPath());
}

class ChooseItemTest : public ItemPanelTest {
 protected:
  static void whenPanelRuns(std::function<void(ItemPanel*)> action) {
    QTimer::singleShot(0, qApp, [action = std::move(action)] {
      auto* running = qobject_cast<ItemPanel*>(QApplication::activeModalWidget());
      ASSERT_NE(running, nullptr);
      action(running);
    });
  }
};

TEST_F(ChooseItemTest, GivesThePathOfTheItem) {
  QWidget window;
  whenPanelRuns([this](ItemPanel* running) {
    EXPECT_EQ(running->windowModality(), Qt::WindowModal);
    auto* field = running->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    field->setText(QString::fromStdString(folder / "papers"));
    QTest::keyClick(field, Qt::Key_Return);
  });
  EXPECT_EQ(chooseItem(&window), folder / "papers");
}

TEST_F(ChooseItemTest, GivesNothingAfterCancel) {
  QWidget window;
  whenPanelRuns([](ItemPanel* running) { running->reject(); });
  EXPECT_EQ(chooseItem(&window), std::nullopt);
}

TEST_F(ChooseItemTest, OutlivesItsWindow) {
  auto window = std::make_unique<QWidget>();
  whenPanelRuns([&window](ItemPanel*) { window.reset(); });
  EXPECT_EQ(chooseItem(window.get()), std::nullopt);
}

}  // namespace
}  // namespace veltrix
