#include "editor/application_chooser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <filesystem>

#include "editor/item_chooser.h"
#include "tests/support/environment.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

InstalledApplication application(const std::string& name, const std::string& comment = "",
                                 const std::vector<std::string>& keywords = {}) {
  InstalledApplication made;
  made.identifier = "org.example." + name;
  made.name = name;
  made.comment = comment;
  made.keywords = keywords;
  return made;
}

class ApplicationChooserTest : public ::testing::Test {
 protected:
  void open(std::vector<InstalledApplication> applications) {
    chooser = std::make_unique<ApplicationChooser>(std::move(applications), nullptr,
                                                   [this](const InstalledApplication&) {
                                                     ++iconsAskedFor;
                                                     return QIcon();
                                                   });
    chooser->show();
    chooser->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(chooser.get()));
  }
  void openUsual() {
    open({application("Archives", "Pack and unpack", {"zip"}), application("Great Sums", "Adds up"),
          application("Sums", "Calculates", {"plus", "minus"}), application("Writer", "Texts and sums")});
  }

  template <typename Widget>
  Widget* find(const char* name) const {
    return chooser->findChild<Widget*>(QString::fromLatin1(name));
  }
  QLineEdit* field() const { return find<QLineEdit>("fieldSearch"); }
  QListView* list() const { return find<QListView>("listApplications"); }
  QPushButton* chooseButton() const { return find<QPushButton>("buttonChoose"); }
  void type(const char* text) const { QTest::keyClicks(field(), QString::fromUtf8(text)); }

  std::vector<std::string> shown() const {
    std::vector<std::string> names;
    for (int row = 0; row < list()->model()->rowCount(); ++row) {
      names.push_back(list()->model()->index(row, 0).data().toString().toStdString());
    }
    return names;
  }
  std::string current() const { return list()->currentIndex().data().toString().toStdString(); }

  int iconsAskedFor = 0;
  std::unique_ptr<ApplicationChooser> chooser;
};

TEST_F(ApplicationChooserTest, ShowsAllInTheirOrderWithTheFirstSelectedAndTheFieldReadyForTyping) {
  openUsual();
  EXPECT_THAT(shown(), ElementsAre("Archives", "Great Sums", "Sums", "Writer"));
  EXPECT_EQ(current(), "Archives");
  EXPECT_TRUE(field()->hasFocus());
}

TEST_F(ApplicationChooserTest, TypingPutsNamesThatBeginSoFirst) {
  openUsual();
  type("sum");
  EXPECT_THAT(shown(), ElementsAre("Sums", "Great Sums", "Writer"));
  EXPECT_EQ(current(), "Sums");
}

TEST_F(ApplicationChooserTest, CommentsAndKeywordsAreSearchedTooInAnyCase) {
  openUsual();
  type("UNPACK");
  EXPECT_THAT(shown(), ElementsAre("Archives"));
  field()->clear();
  type("Minus");
  EXPECT_THAT(shown(), ElementsAre("Sums"));
}

TEST_F(ApplicationChooserTest, EveryWordMustBeFound) {
  openUsual();
  type(" sums  great");
  EXPECT_THAT(shown(), ElementsAre("Great Sums"));
}

TEST_F(ApplicationChooserTest, ArrowKeysInTheFieldMoveThroughTheList) {
  openUsual();
  QTest::keyClick(field(), Qt::Key_Down);
  QTest::keyClick(field(), Qt::Key_Down);
  EXPECT_EQ(current(), "Sums");
  QTest::keyClick(field(), Qt::Key_Up);
  EXPECT_EQ(current(), "Great Sums");
  QTest::keyClick(field(), Qt::Key_PageDown);
  EXPECT_EQ(current(), "Writer");
  EXPECT_TRUE(field()->hasFocus());
}

TEST_F(ApplicationChooserTest, TheSelectedOneIsDescribed) {
  openUsual();
  QTest::keyClick(field(), Qt::Key_Down);
  EXPECT_EQ(find<QLabel>("labelComment")->text(), "Adds up");
}

TEST_F(ApplicationChooserTest, ReturnChoosesTheSelectedOne) {
  openUsual();
  type("sums");
  QTest::keyClick(field(), Qt::Key_Return);
  EXPECT_EQ(chooser->result(), QDialog::Accepted);
  EXPECT_EQ(chooser->chosen(), (ChosenApplication{"Sums", "org.example.Sums"}));
}

TEST_F(ApplicationChooserTest, ReturnInTheListChoosesToo) {
  openUsual();
  list()->setFocus();
  QTest::keyClick(list(), Qt::Key_End);
  QTest::keyClick(list(), Qt::Key_Return);
  EXPECT_EQ(chooser->chosen(), (ChosenApplication{"Writer", "org.example.Writer"}));
}

TEST_F(ApplicationChooserTest, ADoubleClickChooses) {
  openUsual();
  const QPoint place = list()->visualRect(list()->model()->index(1, 0)).center();
  QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
  EXPECT_FALSE(chooser->chosen());
  QTest::mouseDClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
  EXPECT_EQ(chooser->chosen(), (ChosenApplication{"Great Sums", "org.example.Great Sums"}));
}

TEST_F(ApplicationChooserTest, EscapeCancels) {
  openUsual();
  QTest::keyClick(field(), Qt::Key_Escape);
  EXPECT_FALSE(chooser->isVisible());
  EXPECT_EQ(chooser->result(), QDialog::Rejected);
  EXPECT_FALSE(chooser->chosen());
}

TEST_F(ApplicationChooserTest, WithoutAMatchThereIsNothingToChoose) {
  openUsual();
  type("nothing like it");
  EXPECT_THAT(shown(), IsEmpty());
  EXPECT_FALSE(chooseButton()->isEnabled());
  EXPECT_EQ(find<QLabel>("labelComment")->text(), "No application matches.");
  QTest::keyClick(field(), Qt::Key_Return);
  EXPECT_TRUE(chooser->isVisible());
  field()->clear();
  EXPECT_TRUE(chooseButton()->isEnabled());
}

TEST_F(ApplicationChooserTest, IconsAreAskedForOnlyWhenTheyAreSeen) {
  std::vector<InstalledApplication> many;
  many.reserve(2000);
  for (int number = 0; number < 2000; ++number) {
    many.push_back(application("Application " + std::to_string(number)));
  }
  open(std::move(many));
  list()->viewport()->grab();
  EXPECT_GT(iconsAskedFor, 0);
  EXPECT_LT(iconsAskedFor, 60);
  const int before = iconsAskedFor;
  list()->viewport()->grab();
  EXPECT_EQ(iconsAskedFor, before);
}

TEST_F(ApplicationChooserTest, TabsGoFromTheFieldToTheListToTheButtons) {
  openUsual();
  QTest::keyClick(field(), Qt::Key_Tab);
  EXPECT_TRUE(list()->hasFocus());
  QTest::keyClick(list(), Qt::Key_Tab);
  EXPECT_NE(qobject_cast<QPushButton*>(QApplication::focusWidget()), nullptr);
}

TEST_F(ApplicationChooserTest, ANameLosesItsEnding) {
  open({application("Sums.app")});
  QTest::keyClick(field(), Qt::Key_Return);
  EXPECT_EQ(chooser->chosen(), (ChosenApplication{"Sums", "org.example.Sums.app"}));
}

// What a person does in the panel behind the button "Other…".
void whenPanelRuns(const std::function<void(ItemPanel*)>& action) {
  QTimer::singleShot(0, qApp, [action] {
    auto* panel = qobject_cast<ItemPanel*>(QApplication::activeModalWidget());
    ASSERT_NE(panel, nullptr);
    action(panel);
    panel->close();
  });
}

void choosePath(ItemPanel* panel, const std::string& path) {
  auto* field = panel->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  field->setText(QString::fromStdString(path));
  QTest::keyClick(field, Qt::Key_Return);
}

TEST_F(ApplicationChooserTest, OneThatLiesElsewhereIsChosenByItsPath) {
  const testing::TemporaryFolder home;
  testing::writeFile(home / "Sums.app/Contents/Info.plist",
                     "<plist><dict><key>CFBundleIdentifier</key><string>org.sums</string></dict></plist>");
  openUsual();
  whenPanelRuns([&home](ItemPanel* panel) { choosePath(panel, home / "Sums.app"); });
  QTest::mouseClick(find<QPushButton>("buttonOther"), Qt::LeftButton);
  EXPECT_EQ(chooser->chosen(), (ChosenApplication{"Sums", "org.sums"}));
  EXPECT_FALSE(chooser->isVisible());
}

TEST_F(ApplicationChooserTest, WhatCannotBeStartedIsNoChoice) {
  const testing::TemporaryFolder home;
  testing::writeFile(home / "notes.txt", "");
  std::filesystem::create_directories(home / "folder");
  openUsual();
  whenPanelRuns([&home](ItemPanel* panel) {
    choosePath(panel, home / "notes.txt");
    EXPECT_TRUE(panel->isVisible());
    choosePath(panel, home / "folder");
    EXPECT_FALSE(panel->chosenPath());
  });
  QTest::mouseClick(find<QPushButton>("buttonOther"), Qt::LeftButton);
  EXPECT_FALSE(chooser->chosen());
  EXPECT_TRUE(chooser->isVisible());
}

class ChooseApplicationTest : public ::testing::Test {
 protected:
  ChooseApplicationTest() : fOwn("XDG_DATA_HOME", fHome.path()), fShared("XDG_DATA_DIRS", fHome / "none") {
    testing::writeFile(fHome / "applications/sums.desktop",
                       "[Desktop Entry]\nType=Application\nName=Sums\nExec=sums\n");
  }

  static void whenChooserRuns(std::function<void(ApplicationChooser*)> action) {
    QTimer::singleShot(0, qApp, [action = std::move(action)] {
      auto* chooser = qobject_cast<ApplicationChooser*>(QApplication::activeModalWidget());
      ASSERT_NE(chooser, nullptr);
      action(chooser);
    });
  }

 private:
  testing::TemporaryFolder fHome;
  testing::ScopedEnvironment fOwn;
  testing::ScopedEnvironment fShared;
};

TEST_F(ChooseApplicationTest, GivesAnApplicationOfThisDesktop) {
  QWidget window;
  whenChooserRuns([](ApplicationChooser* chooser) {
    EXPECT_EQ(chooser->windowModality(), Qt::WindowModal);
    chooser->findChild<QPushButton*>(QStringLiteral("buttonChoose"))->click();
  });
  EXPECT_EQ(chooseApplication(&window), (ChosenApplication{"Sums", "sums"}));
}

TEST_F(ChooseApplicationTest, GivesNothingAfterCancel) {
  QWidget window;
  whenChooserRuns([](ApplicationChooser* chooser) { chooser->reject(); });
  EXPECT_EQ(chooseApplication(&window), std::nullopt);
  EXPECT_THAT(window.findChildren<QDialog*>(), IsEmpty());
}

TEST_F(ChooseApplicationTest, OutlivesItsWindow) {
  auto window = std::make_unique<QWidget>();
  whenChooserRuns([&window](ApplicationChooser*) { window.reset(); });
  EXPECT_EQ(chooseApplication(window.get()), std::nullopt);
}

}  // namespace
}  // namespace veltrix
