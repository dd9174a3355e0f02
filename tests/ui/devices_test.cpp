// How the pane follows the trackballs that are plugged in.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QStackedWidget>

#include "pane/cell_matrix.h"
#include "tests/support/pane_fixture.h"

namespace veltrix::testing {
namespace {

using ::testing::ElementsAre;

class DevicesTest : public PaneTest {
 protected:
  std::vector<bool> enabledCells() const {
    std::vector<bool> enabled;
    auto* matrix = find<CellMatrix>("outMainMatrixDevices");
    enabled.reserve(static_cast<std::size_t>(matrix->columnCount()));
    for (int column = 0; column < matrix->columnCount(); ++column) {
      enabled.push_back(matrix->cell(column)->isEnabled());
    }
    return enabled;
  }

  int page(const char* stack) const { return find<QStackedWidget>(stack)->currentIndex(); }
  QString helpText() const { return find<QLabel>("outHelpTextDevices")->text(); }
  int selectedKind() const { return find<CellMatrix>("outMainMatrixDevices")->selectedTag(); }
};

TEST_F(DevicesTest, BeforeTheFirstPollTheButtonsPageIsBlank) {
  makePane();
  EXPECT_EQ(page("outBtnTabsDevices"), 0);
}

TEST_F(DevicesTest, TheFirstPollWithoutADeviceSaysSo) {
  openPane();
  EXPECT_EQ(helpText(), "No device found.");
  EXPECT_THAT(enabledCells(), ElementsAre(false, false, false, false, false));
  EXPECT_EQ(page("outMainTabsDeviceIcons"), 0);
  EXPECT_EQ(page("outBtnTabsDevices"), 1);
}

TEST_F(DevicesTest, CellsCarryTheirProductIds) {
  makePane();
  auto* matrix = find<CellMatrix>("outMainMatrixDevices");
  std::vector<int> tags;
  tags.reserve(static_cast<std::size_t>(matrix->columnCount()));
  for (int column = 0; column < matrix->columnCount(); ++column) {
    tags.push_back(matrix->cell(column)->property("tag").toInt());
  }
  EXPECT_THAT(tags, ElementsAre(0x1020, 0x2041, 0x1022, 0x2048, 0x8002));
}

TEST_F(DevicesTest, TwoKindsEnableBothCellsAndShowTheStrip) {
  plug({{0x1020, 0x0102}, {0x8002, 0x0203}});
  openPane();
  EXPECT_THAT(enabledCells(), ElementsAre(true, false, false, false, true));
  EXPECT_EQ(page("outMainTabsDeviceIcons"), 1);
  EXPECT_EQ(helpText(), QString::fromUtf8(
                            "Crest Pointer™ Rev. 1.02\nAldmoor Cirra™ Roaming Pocket Trackball Rev. 2.03\n"));
}

TEST_F(DevicesTest, TwoOfAKindEnableOneCellAndHaveTwoLines) {
  plug({{0x1020, 0x0102}, {0x1020, 0x010A}});
  openPane();
  EXPECT_THAT(enabledCells(), ElementsAre(true, false, false, false, false));
  EXPECT_EQ(page("outMainTabsDeviceIcons"), 0);
  EXPECT_EQ(helpText(), QString::fromUtf8("Crest Pointer™ Rev. 1.02\nCrest Pointer™ Rev. 1.10\n"));
}

TEST_F(DevicesTest, TheVersionOfTheSkifflineDecidesItsPage) {
  plug({{0x2041, 0x0106}});
  openPane();
  EXPECT_EQ(page("outBtnTabsDevices"), 4);
  plugAndPoll({{0x2041, 0x0107}, {0x2041, 0x0107}});
  EXPECT_EQ(page("outBtnTabsDevices"), 3);
}

TEST_F(DevicesTest, EveryKindHasItsButtonsPage) {
  openPane();
  const std::vector<std::pair<std::uint16_t, int>> pages = {
      {0x1020, 2}, {0x1022, 5}, {0x2048, 6}, {0x8002, 7}};
  for (const auto& [productId, expected] : pages) {
    plugAndPoll({});
    plugAndPoll({{productId, 0x0100}});
    EXPECT_EQ(page("outBtnTabsDevices"), expected);
  }
}

TEST_F(DevicesTest, AnUnknownProductHasALineButNoCell) {
  plug({{0x7777, 0x0100}});
  openPane();
  EXPECT_EQ(helpText(), " Rev. 1.00\n");
  EXPECT_THAT(enabledCells(), ElementsAre(false, false, false, false, false));
  EXPECT_EQ(page("outBtnTabsDevices"), 1);
}

TEST_F(DevicesTest, AnExchangeThatKeepsTheNumberChangesNothing) {
  plug({{0x1020, 0x0102}});
  openPane();
  plugAndPoll({{0x8002, 0x0100}});
  EXPECT_EQ(page("outBtnTabsDevices"), 2);
  EXPECT_EQ(helpText(), QString::fromUtf8("Crest Pointer™ Rev. 1.02\n"));
  EXPECT_THAT(enabledCells(), ElementsAre(true, false, false, false, false));
}

TEST_F(DevicesTest, AFailedPollChangesNothing) {
  plug({{0x1020, 0x0102}});
  openPane();
  helperStatus = -1712;
  plugAndPoll({});
  EXPECT_EQ(page("outBtnTabsDevices"), 2);
  EXPECT_EQ(pane->vtxGetDeviceList()->count, 1);
}

TEST_F(DevicesTest, AHelperThatIsAbsentFromTheStartLeavesWhatLoadingHasShown) {
  helperStatus = -600;
  openPane();
  EXPECT_EQ(page("outBtnTabsDevices"), 0);
  EXPECT_NE(helpText(), "No device found.");
}

TEST_F(DevicesTest, TheCountIsRememberedWhileThePaneIsAway) {
  plug({{0x1020, 0x0102}});
  openPane();
  pane->willUnselect();
  plug({{0x8002, 0x0100}});
  pane->didSelect();
  EXPECT_EQ(page("outBtnTabsDevices"), 2);
}

TEST_F(DevicesTest, TheSelectorShowsTheKindOfTheChosenEntry) {
  plug({{0x8002, 0x0203}, {0x1020, 0x0102}});
  openPane();
  EXPECT_EQ(selectedKind(), 0x8002);
  EXPECT_EQ(page("outBtnTabsDevices"), 7);
}

TEST_F(DevicesTest, AnEntryOfNoKindLeavesTheSelection) {
  plug({{0x8002, 0x0203}, {0x1020, 0x0102}});
  writeUserFile(makeDocument({makeEntry(0), makeEntry(0x8002), makeEntry(0x1020)}));
  openPane();
  plugAndPoll({});
  EXPECT_EQ(selectedKind(), 0x8002);
}

TEST_F(DevicesTest, ChoosingAKindShowsItsSettingsWithoutSaving) {
  plist::Dictionary pocket = makeEntry(0x8002);
  pocket.dictionaryFor("options").set("slow", true);
  writeUserFile(makeDocument({makeEntry(0x1020), pocket}));
  plug({{0x1020, 0x0102}, {0x8002, 0x0203}});
  openPane();
  EXPECT_FALSE(isChecked("outPointerBoxSlow"));
  log.clear();
  click("cellDevice4");
  EXPECT_EQ(page("outBtnTabsDevices"), 7);
  EXPECT_TRUE(isChecked("outPointerBoxSlow"));
  EXPECT_TRUE(log.empty());
  click("outScrollBoxInertial");
  EXPECT_TRUE(userOptions(0x8002).boolFor("inertial scroll"));
  EXPECT_FALSE(userOptions(0x1020).boolFor("inertial scroll"));
}

TEST_F(DevicesTest, ADeviceStateHasNoEffect) {
  plug({{0x1020, 0x0102}});
  openPane();
  log.clear();
  gVeltrixController->vtxReceiveDeviceState({});
  EXPECT_TRUE(log.empty());
  EXPECT_EQ(page("outBtnTabsDevices"), 2);
}

TEST_F(DevicesTest, ACountAboveTheRoomIsReadAsTheRoom) {
  plug({{0x1020, 0x0102}});
  openPane();
  helperDevices.count = 60000;
  pane->vtxCheckDevices();
  EXPECT_EQ(helpText().count('\n'), 16);
}

}  // namespace
}  // namespace veltrix::testing
