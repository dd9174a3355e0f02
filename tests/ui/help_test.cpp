// The help page: links, the report, the uninstaller.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <cstring>

#include "pane/links.h"
#include "tests/support/pane_fixture.h"
#include "tests/support/property_list_files.h"
#include "util/hyperlink_button.h"

namespace veltrix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HelpTest : public PaneTest {
 protected:
  // With nothing in the log yet.
  void openHelp() {
    openPane();
    openRootTab(4);
    log.clear();
  }

  std::string reportPath() const { return home / "Desktop/Veltrix Info.plist"; }
  plist::Dictionary report() const { return readPlist(reportPath()); }
};

TEST_F(HelpTest, LinksOpenTheirAddresses) {
  openHelp();
  click("buttonWebSite");
  click("buttonSupport");
  EXPECT_THAT(log, ElementsAre("url https://veltrix.aldmoor.example/",
                               "url https://veltrix.aldmoor.example/support"));
}

TEST_F(HelpTest, LinksAreLinkButtonsThatSayWhereTheyLead) {
  openHelp();
  EXPECT_EQ(find<VeltrixHyperlinkButton>("buttonWebSite")->toolTip(), kProductUrl);
  EXPECT_EQ(find<VeltrixHyperlinkButton>("buttonSupport")->toolTip(), kSupportUrl);
}

TEST_F(HelpTest, PageInALowWindowScrollsInsteadOfSqueezingItsTexts) {
  openPane();
  plugAndPoll({{0x1020, 0x0100}, {0x2041, 0x0107}, {0x8002, 0x0203}});
  openRootTab(4);
  QWidget* const view = pane->mainView();
  view->show();
  for (const int width : {900, 500, 400}) {
    view->resize(width, 300);
    QTest::qWait(0);
    const QWidget* const page = find<QScrollArea>("VeltrixHelpTabScroll")->widget();
    for (const QLabel* label : page->findChildren<QLabel*>()) {
      if (label->isVisible()) {
        EXPECT_GE(label->height(), label->heightForWidth(label->width()))
            << qPrintable(label->objectName()) << width;
      }
    }
  }
}

TEST_F(HelpTest, UninstallButtonOpensTheUninstaller) {
  openHelp();
  click("buttonUninstall");
  EXPECT_THAT(log, ElementsAre("open /Applications/Utilities/Veltrix Uninstaller.app"));
}

TEST_F(HelpTest, TagChoosesWhatIsOpened) {
  openHelp();
  QObject sender;
  for (const int tag : {1, 2, 100}) {
    sender.setProperty("tag", tag);
    gVeltrixController->actButtonOpenLink(&sender);
  }
  EXPECT_THAT(
      log, ElementsAre("url https://veltrix.aldmoor.example/", "url https://veltrix.aldmoor.example/support",
                       "open /Applications/Utilities/Veltrix Uninstaller.app"));
}

TEST_F(HelpTest, UnknownTagOpensNothing) {
  openHelp();
  QObject sender;
  gVeltrixController->actButtonOpenLink(&sender);
  for (const int tag : {-1, 0, 3, 99, 101}) {
    sender.setProperty("tag", tag);
    gVeltrixController->actButtonOpenLink(&sender);
  }
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(HelpTest, EveryButtonWorksByTheKeyboard) {
  openHelp();
  press("buttonWebSite", Qt::Key_Return);
  press("buttonSupport", Qt::Key_Space);
  press("buttonUninstall", Qt::Key_Space);
  press("buttonSaveInformation", Qt::Key_Space);
  EXPECT_THAT(
      log, ElementsAre("url https://veltrix.aldmoor.example/", "url https://veltrix.aldmoor.example/support",
                       "open /Applications/Utilities/Veltrix Uninstaller.app", "select " + reportPath()));
}

TEST_F(HelpTest, TabGoesThroughTheButtonsInTheirOrder) {
  openHelp();
  find("buttonWebSite")->setFocus();
  for (const char* next : {"buttonSupport", "buttonSaveInformation", "buttonUninstall"}) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(find(next)->hasFocus()) << next;
  }
}

TEST_F(HelpTest, ReportIsWrittenAndShown) {
  now = std::chrono::system_clock::time_point(std::chrono::seconds(1795190744));
  openHelp();
  click("buttonSaveInformation");
  EXPECT_THAT(log, ElementsAre("select " + reportPath()));
  const plist::Dictionary support = report().dictionaryFor("support");
  EXPECT_EQ(support.stringFor("date"), "2026-11-20 16:05:44 +0000");
  EXPECT_EQ(support.stringFor("driver version"), "4.5.6");
  EXPECT_EQ(support.stringFor("mac os version"), "12.5.0");
  EXPECT_EQ(support.arrayFor("connected devices").count(), 0U);
  EXPECT_EQ(report().arrayFor("devices").count(), 6U);
}

TEST_F(HelpTest, ReportNamesTheTrackballsInTheOrderOfTheList) {
  plug({{0x2041, 0x0107}, {0x1020, 0x0100}});
  helperDevices.device[0].vendorID = 0x2A7;
  std::strcpy(helperDevices.device[1].productName, "Kugel für Ä");
  openHelp();
  click("buttonSaveInformation");
  const plist::Array devices = report().dictionaryFor("support").arrayFor("connected devices");
  ASSERT_EQ(devices.count(), 2U);
  EXPECT_EQ(devices.at(0).asDictionary().stringFor("vendor id"), "02a7");
  EXPECT_EQ(devices.at(0).asDictionary().stringFor("product id"), "2041");
  EXPECT_EQ(devices.at(1).asDictionary().stringFor("product id"), "1020");
  EXPECT_EQ(devices.at(1).asDictionary().stringFor("product name"), "Kugel für Ä");
}

TEST_F(HelpTest, ReportHoldsChangesThatAreNotYetSaved) {
  plug({{0x1020, 0x0100}});
  openHelp();
  // A folder in the place of the file lets every save fail.
  const std::string settings = home / "Library/Preferences/com.aldmoor.veltrix.settings.plist";
  std::filesystem::remove(settings);
  std::filesystem::create_directories(settings + "/in the way");
  click("outPointerBoxSlow");
  click("buttonSaveInformation");
  const plist::Dictionary entry = report().arrayFor("devices").at(0).asDictionary();
  EXPECT_EQ(entry.uint16For("device product id"), 0x1020);
  EXPECT_TRUE(entry.dictionaryFor("options").boolFor("slow"));
}

TEST_F(HelpTest, ReportLeavesSettingsAndTheirFileAlone) {
  plug({{0x1020, 0x0100}});
  openHelp();
  const std::string settings = home / "Library/Preferences/com.aldmoor.veltrix.settings.plist";
  const std::string before = readFile(settings);
  click("buttonSaveInformation");
  EXPECT_EQ(readFile(settings), before);
  click("outPointerBoxSlow");
  EXPECT_FALSE(userFile().contains("support"));
}

TEST_F(HelpTest, ReportThatCannotBeWrittenIsShownAllTheSame) {
  writeFile(home / "Desktop", "a file where the folder should be");
  openHelp();
  click("buttonSaveInformation");
  EXPECT_THAT(log, ElementsAre("select " + reportPath()));
  EXPECT_FALSE(std::filesystem::exists(reportPath()));
}

TEST_F(HelpTest, WithoutABundleVersionTheReportEndsAfterTheDate) {
  writePlist(home / "bundle/Info.plist", plist::Dictionary::create());
  openHelp();
  click("buttonSaveInformation");
  EXPECT_THAT(report().dictionaryFor("support").keys(), ElementsAre("date"));
}

TEST_F(HelpTest, ButtonsAreDescribedByTheTextsBesideThem) {
  openHelp();
  EXPECT_EQ(find("buttonSaveInformation")->accessibleDescription(),
            find<QLabel>("labelSaveInformation")->text());
  EXPECT_EQ(find("buttonUninstall")->accessibleDescription(), find<QLabel>("labelUninstall")->text());
}

}  // namespace
}  // namespace veltrix::testing
