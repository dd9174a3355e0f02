// The way from the scrolling page through the sheet with the scroll parameters into the file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDialog>
#include <QLineEdit>
#include <QTest>

#include "tests/support/pane_fixture.h"

namespace veltrix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint16_t kCrest = 0x1020;

class ScrollParametersTest : public PaneTest {
 protected:
  // The scrolling page of a trackball, in a document that asks for the sheet.
  void openWith(const plist::Dictionary& parameters) {
    plist::Dictionary entry = makeEntry(kCrest);
    entry.set("param", parameters);
    plist::Dictionary document = makeDocument({entry});
    document.set("paramUI", true);
    writeUserFile(document);
    plug({{kCrest, 0x0100}});
    openPane();
    log.clear();
  }

  static void typeIntoTheFirstField(QDialog* dialog, const char* number) {
    auto* const field = dialog->findChild<QLineEdit*>("outParamField1");
    field->selectAll();
    QTest::keyClicks(field, number);
  }

  static plist::Dictionary usualParameters() {
    plist::Dictionary parameters = plist::Dictionary::create();
    parameters.set("triggerTime", 10);
    return parameters;
  }

  plist::Dictionary stored() const { return userEntry(kCrest).dictionaryFor("param"); }
};

TEST_F(ScrollParametersTest, OKIsSavedAndAnnounced) {
  openWith(usualParameters());
  whenDialogRuns([](QDialog* dialog) {
    typeIntoTheFirstField(dialog, "77");
    QTest::keyClick(dialog, Qt::Key_Return);
  });
  click("outScrollButtonAdvanced");
  EXPECT_EQ(stored().int32For("triggerTime"), 77);
  EXPECT_THAT(log, ElementsAre("VXUp"));
}

TEST_F(ScrollParametersTest, CancelSavesNothing) {
  openWith(usualParameters());
  whenDialogRuns([](QDialog* dialog) {
    typeIntoTheFirstField(dialog, "77");
    QTest::keyClick(dialog, Qt::Key_Escape);
  });
  click("outScrollButtonAdvanced");
  EXPECT_THAT(log, IsEmpty());
  EXPECT_EQ(stored().int32For("triggerTime"), 10);
  click("outScrollBoxInertial");
  EXPECT_EQ(stored().int32For("triggerTime"), 10);
}

TEST_F(ScrollParametersTest, AnEntryWithoutParametersShowsNoSheet) {
  openWith(plist::Dictionary());
  bool ran = false;
  whenDialogRuns([&](QDialog* dialog) {
    ran = true;
    dialog->reject();
  });
  click("outScrollButtonAdvanced");
  QApplication::processEvents();
  EXPECT_FALSE(ran);
  EXPECT_THAT(log, IsEmpty());
}

}  // namespace
}  // namespace veltrix::testing
