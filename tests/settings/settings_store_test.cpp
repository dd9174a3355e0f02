#include "settings/settings_store.h"

#include <gmock/gmock.h>

#include "helperlink/helper_protocol.h"
#include "tests/support/store_fixture.h"

namespace veltrix {
namespace {

using plist::Dictionary;
using testing::arrayOf;
using testing::dictionaryOf;
using testing::documentOf;
using ::testing::ElementsAre;
using testing::entryOf;
using ::testing::IsEmpty;
using testing::OpenStore;
using testing::readPlist;
using testing::writePlist;

class SettingsStoreTest : public testing::StoreTest {
 protected:
  static Dictionary documentWithSpeeds(std::initializer_list<int> speeds) {
    auto document = documentOf({});
    for (const int speed : speeds) {
      document.arrayFor("devices").append(entryWithSpeed(speed, speed));
    }
    return document;
  }

  static Dictionary entryWithSpeed(std::int64_t product, int speed) {
    auto entry = entryOf(0xA1D0, product);
    entry.set("options", dictionaryOf({{"speed", speed}}));
    return entry;
  }

  static int speedOf(const plist::Value& entry) {
    return entry.asDictionary().dictionaryFor("options").int32For("speed");
  }
};

TEST_F(SettingsStoreTest, WithoutAnyFileThereIsNoDocument) {
  EXPECT_TRUE(fStore.newVTXPrefsFromFile().isNull());
  EXPECT_FALSE(fStore.loadDocument());
  EXPECT_TRUE(fStore.fPrefsDict.isNull());
  EXPECT_TRUE(fStore.vtxGetSettingsArray().isNull());
  EXPECT_EQ(fStore.fCurSettingsIndex, -1);
  EXPECT_THAT(fMessages, IsEmpty());
}

TEST_F(SettingsStoreTest, WithoutFactorySettingsTheUserFileIsUsedAsItIs) {
  writePlist(fSettingsPath, documentWithSpeeds({1}));
  EXPECT_TRUE(plist::equal(fStore.newVTXPrefsFromFile(), documentWithSpeeds({1})));
  EXPECT_THAT(fMessages, IsEmpty());
}

TEST_F(SettingsStoreTest, WithoutAUserFileTheFactorySettingsBecomeOne) {
  writePlist(fDefaultsPath, documentWithSpeeds({1, 2}));
  EXPECT_TRUE(plist::equal(fStore.newVTXPrefsFromFile(), documentWithSpeeds({1, 2})));
  EXPECT_TRUE(plist::equal(readPlist(fSettingsPath), documentWithSpeeds({1, 2})));
  EXPECT_THAT(fMessages, ElementsAre(kSettingsChangedMessage));
}

TEST_F(SettingsStoreTest, MergingReachesTheDiskOnlyWithTheNextSave) {
  writePlist(fDefaultsPath, documentOf({entryOf(1, 0x2041, 0x0107, 0)}));
  writePlist(fSettingsPath, documentOf({entryOf(1, 0x2041, 0x0100, 0x0106)}));
  const auto document = fStore.newVTXPrefsFromFile();
  ASSERT_EQ(document.arrayFor("devices").count(), 2U);
  EXPECT_EQ(document.arrayFor("devices").at(1).asDictionary().int32For("device version min"), 0x0107);
  EXPECT_EQ(readPlist(fSettingsPath).arrayFor("devices").count(), 1U);
  EXPECT_THAT(fMessages, IsEmpty());
  EXPECT_TRUE(fStore.vtxSavePrefsToFile(document));
  EXPECT_EQ(readPlist(fSettingsPath).arrayFor("devices").count(), 2U);
}

TEST_F(SettingsStoreTest, ReadsEveryFormOfPropertyList) {
  testing::writeFile(fSettingsPath, plist::writeBinary(documentWithSpeeds({3})).value());
  EXPECT_TRUE(plist::equal(fStore.newVTXPrefsFromFile(), documentWithSpeeds({3})));
  testing::writeFile(fSettingsPath, "{ version = 2; devices = ( { \"device product id\" = 5; } ); }");
  EXPECT_EQ(
      fStore.newVTXPrefsFromFile().arrayFor("devices").at(0).asDictionary().int32For("device product id"), 5);
}

TEST_F(SettingsStoreTest, KeepsWhatItDoesNotKnow) {
  auto document = documentWithSpeeds({1});
  document.set("unknown", arrayOf({dictionaryOf({{"a", 1.5}}), "text"}));
  writePlist(fSettingsPath, document);
  ASSERT_TRUE(fStore.loadDocument());
  ASSERT_TRUE(fStore.vtxSavePrefsToFile(fStore.fPrefsDict));
  EXPECT_TRUE(plist::equal(readPlist(fSettingsPath).get("unknown"), document.get("unknown")));
}

TEST_F(SettingsStoreTest, SavingWritesXmlAndThenTellsTheHelper) {
  auto environment = this->environment();
  std::string fileAtMessage;
  environment.sendMessageToHelper = [&](std::uint32_t message) {
    fMessages.push_back(message);
    fileAtMessage = testing::readFile(fSettingsPath);
    return -600;  // nobody there: the save counts all the same
  };
  OpenStore store(environment);
  EXPECT_TRUE(store.vtxSavePrefsToFile(documentWithSpeeds({7})));
  EXPECT_THAT(fMessages, ElementsAre(kSettingsChangedMessage));
  EXPECT_EQ(fileAtMessage, plist::writeXml(documentWithSpeeds({7})).value());
}

TEST_F(SettingsStoreTest, SavingWorksWithoutAnybodyToTell) {
  auto environment = this->environment();
  environment.sendMessageToHelper = nullptr;
  EXPECT_TRUE(OpenStore(environment).vtxSavePrefsToFile(documentWithSpeeds({7})));
}

TEST_F(SettingsStoreTest, LoadingSharesTheArraysWithTheDocument) {
  writePlist(fSettingsPath, documentWithSpeeds({1, 2}));
  ASSERT_TRUE(fStore.loadDocument());
  EXPECT_TRUE(fStore.vtxGetSettingsArray().sameAs(fStore.fPrefsDict.arrayFor("devices")));
  EXPECT_TRUE(fStore.fSnippetsArray.sameAs(fStore.fPrefsDict.arrayFor("snippets")));
  EXPECT_EQ(fStore.fSnippetsArray.count(), 0U);
}

TEST_F(SettingsStoreTest, LoadingCreatesAMissingDeviceList) {
  writePlist(fDefaultsPath, dictionaryOf({{"version", 2}}));
  ASSERT_TRUE(fStore.loadDocument());
  EXPECT_TRUE(fStore.fPrefsDict.arrayFor("devices").sameAs(fStore.vtxGetSettingsArray()));
  EXPECT_EQ(fStore.fCurSettingsIndex, -1);
  EXPECT_TRUE(fStore.fCurSettingsDict.isNull());
}

TEST_F(SettingsStoreTest, FirstChoiceIsTheFirstEntryWithoutADeviceTab) {
  writePlist(fSettingsPath, documentWithSpeeds({1, 2}));
  ASSERT_TRUE(fStore.loadDocument());
  EXPECT_EQ(fStore.fCurSettingsIndex, 0);
  EXPECT_EQ(fStore.fCurDeviceTab, 1);
  EXPECT_EQ(fStore.vtxCurDeviceTabIndex(), -1);
}

TEST_F(SettingsStoreTest, LoadingAgainKeepsWhatIsThereWhenBothFilesHaveGone) {
  writePlist(fSettingsPath, documentWithSpeeds({1}));
  ASSERT_TRUE(fStore.loadDocument());
  const auto document = fStore.fPrefsDict;
  std::filesystem::remove(fSettingsPath);
  EXPECT_FALSE(fStore.loadDocument());
  EXPECT_TRUE(fStore.fPrefsDict.sameAs(document));
}

TEST_F(SettingsStoreTest, CurrentEntryIsTheElementItselfSoThatEditsReachTheDocument) {
  writePlist(fSettingsPath, documentWithSpeeds({1, 2}));
  ASSERT_TRUE(fStore.loadDocument());
  fStore.fCurSettingsIndex = 1;
  fStore.vtxGetSettingsFromPrefs();
  fStore.fCurSettingsDict.dictionaryFor("options").set("speed", 99);
  EXPECT_EQ(speedOf(fStore.fPrefsDict.arrayFor("devices").at(1)), 99);
}

TEST_F(SettingsStoreTest, AnIndexOutsideTheListChoosesTheFirstEntry) {
  writePlist(fSettingsPath, documentWithSpeeds({1, 2}));
  ASSERT_TRUE(fStore.loadDocument());
  for (const int index : {2, -1, -2147483647}) {
    fStore.fCurSettingsIndex = index;
    fStore.vtxGetSettingsFromPrefs();
    EXPECT_EQ(fStore.fCurSettingsIndex, 0);
    EXPECT_EQ(speedOf(fStore.fCurSettingsDict), 1);
  }
}

TEST_F(SettingsStoreTest, AnEmptyListChangesNoChoice) {
  fStore.fSettingsArray = plist::Array::create();
  fStore.fCurSettingsIndex = 5;
  fStore.fCurSettingsDict = entryOf(1, 2);
  const auto before = fStore.fCurSettingsDict;
  fStore.vtxGetSettingsFromPrefs();
  EXPECT_EQ(fStore.fCurSettingsIndex, 5);
  EXPECT_TRUE(fStore.fCurSettingsDict.sameAs(before));
}

TEST_F(SettingsStoreTest, FindsTheEntryOfTheConnectedDevice) {
  writePlist(fSettingsPath, documentOf({entryOf(1, 0x1020), entryOf(1, 0x8002)}));
  ASSERT_TRUE(fStore.loadDocument());
  std::uint32_t tab = 99;
  EXPECT_EQ(fStore.vtxFindSettingsForDevice(0, &tab), 0);
  EXPECT_EQ(tab, 1U);
  fDevices.count = 1;
  fDevices.device[0].productID = 0x8002;
  EXPECT_EQ(fStore.vtxFindSettingsForDevice(0, &tab), 1);
  EXPECT_EQ(tab, 7U);
  EXPECT_EQ(fStore.vtxFindSettingsForDevice(0, nullptr), 1);
}

TEST_F(SettingsStoreTest, FindsNothingWithoutADeviceList) {
  OpenStore store(SettingsEnvironment{});
  std::uint32_t tab = 99;
  EXPECT_EQ(store.vtxFindSettingsForDevice(0x1020, &tab), 0);
  EXPECT_EQ(tab, 1U);
}

TEST_F(SettingsStoreTest, DeviceTabIndexCountsFromTheFirstKind) {
  fStore.fCurDeviceTab = 2;
  EXPECT_EQ(fStore.vtxCurDeviceTabIndex(), 0);
  fStore.fCurDeviceTab = 7;
  EXPECT_EQ(fStore.vtxCurDeviceTabIndex(), 5);
}

TEST_F(SettingsStoreTest, SortingFollowsTheCurrentEntryByIdentity) {
  auto wildcard = entryOf(0, 0);
  wildcard.set("dict version", 0);
  const auto twin = entryOf(1, 2);
  fStore.fSettingsArray = arrayOf({entryOf(1, 2), twin, wildcard});
  fStore.fCurSettingsIndex = 1;
  fStore.fCurSettingsDict = twin;
  fStore.vtxSortSettings();
  EXPECT_TRUE(fStore.fSettingsArray.at(0).asDictionary().sameAs(wildcard));
  EXPECT_EQ(fStore.fCurSettingsIndex, 2);
}

TEST_F(SettingsStoreTest, SortingWithoutACurrentEntryLeavesNoIndex) {
  fStore.fSettingsArray = arrayOf({entryOf(1, 2), "text"});
  fStore.fCurSettingsIndex = 0;
  fStore.vtxSortSettings();
  EXPECT_EQ(fStore.fCurSettingsIndex, -1);
  fStore.fCurSettingsDict = entryOf(1, 2);  // equal to an element, yet none of them
  fStore.vtxSortSettings();
  EXPECT_EQ(fStore.fCurSettingsIndex, -1);
}

TEST_F(SettingsStoreTest, SpeedConversionsAreThoseOfTheTable) {
  EXPECT_EQ(SettingsStore::vtxSpeedSliderToDPI(9), 4000);
  EXPECT_EQ(SettingsStore::vtxDPIToSpeedSlider(450), 50);
}

TEST_F(SettingsStoreTest, RestoringReplacesOneEntryAndSaves) {
  writePlist(fDefaultsPath, documentOf({entryWithSpeed(1, 100), entryWithSpeed(2, 200)}));
  auto user = documentOf({entryWithSpeed(1, 5), entryWithSpeed(2, 6)});
  user.set("snippets", arrayOf({"mine"}));
  writePlist(fSettingsPath, user);
  ASSERT_TRUE(fStore.loadDocument());
  fStore.fCurSettingsIndex = 1;
  ASSERT_TRUE(fStore.restoreDefaultEntry(1));
  EXPECT_EQ(speedOf(fStore.fCurSettingsDict), 200);
  EXPECT_TRUE(fStore.fCurSettingsDict.sameAs(fStore.fSettingsArray.at(1).asDictionary()));
  const auto onDisk = readPlist(fSettingsPath);
  EXPECT_EQ(speedOf(onDisk.arrayFor("devices").at(0)), 5);
  EXPECT_EQ(speedOf(onDisk.arrayFor("devices").at(1)), 200);
  EXPECT_EQ(onDisk.arrayFor("snippets").at(0).asString(), "mine");
  EXPECT_THAT(fMessages, ElementsAre(kSettingsChangedMessage));
}

TEST_F(SettingsStoreTest, RestoringComparesTheLowSixteenBits) {
  auto factory = entryOf(0xA1D0, 0x2041, 0x0100, 0x0107);
  factory.set("options", dictionaryOf({{"speed", 300}}));
  writePlist(fDefaultsPath, documentOf({factory}));
  writePlist(fSettingsPath, documentOf({entryOf(0xA1D0, 0x2041, 0x0100, 0x10107)}));
  ASSERT_TRUE(fStore.loadDocument());
  ASSERT_TRUE(fStore.restoreDefaultEntry(0));
  EXPECT_EQ(speedOf(fStore.fSettingsArray.at(0)), 300);
}

TEST_F(SettingsStoreTest, RestoringWithoutAFactoryEntryOfTheSameIdsChangesNothing) {
  writePlist(fDefaultsPath, documentOf({entryWithSpeed(1, 100)}));
  writePlist(fSettingsPath, documentOf({entryWithSpeed(9, 5)}));
  ASSERT_TRUE(fStore.loadDocument());
  const std::string before = testing::readFile(fSettingsPath);
  EXPECT_FALSE(fStore.restoreDefaultEntry(0));
  EXPECT_FALSE(fStore.restoreDefaultEntry(-1));
  EXPECT_FALSE(fStore.restoreDefaultEntry(99));
  std::filesystem::remove(fDefaultsPath);
  EXPECT_FALSE(fStore.restoreDefaultEntry(1));
  EXPECT_EQ(speedOf(fStore.fSettingsArray.at(0)), 5);
  EXPECT_EQ(testing::readFile(fSettingsPath), before);
  EXPECT_THAT(fMessages, IsEmpty());
}

}  // namespace
}  // namespace veltrix
