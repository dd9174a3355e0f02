#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "helperlink/helper_protocol.h"
#include "tests/support/file_failures.h"
#include "tests/support/store_fixture.h"

// What becomes of the user's file when it is no good, or when the disk does not take a new one.
namespace veltrix {
namespace {

using plist::Dictionary;
using testing::documentOf;
using ::testing::ElementsAre;
using testing::entryOf;
using ::testing::IsEmpty;
using testing::namesIn;
using testing::OpenStore;
using testing::readFile;
using testing::readPlist;
using testing::ScopedFileCalls;
using testing::ScopedOrdinaryUser;
using testing::writeFile;
using testing::writePlist;

FileCalls callsThatFindTheDiskFull() {
  FileCalls calls;
  calls.write = [](int, const void*, std::size_t) -> ssize_t {
    errno = ENOSPC;
    return -1;
  };
  return calls;
}

class UserFile : public testing::StoreTest {
 protected:
  UserFile() { writePlist(fDefaultsPath, factory()); }

  static Dictionary factory() { return documentOf({entryOf(1, 0x1020)}); }
  static Dictionary users() { return documentOf({entryOf(1, 0x1020), entryOf(7, 7)}); }

  bool holdsFactorySettings() const { return plist::equal(readPlist(fSettingsPath), factory()); }

  // Loading gives the factory settings, which replace the file; what was there stands beside them.
  void expectKept(const std::string& oldText) {
    writeFile(fSettingsPath, oldText);
    EXPECT_TRUE(plist::equal(fStore.newVTXPrefsFromFile(), factory()));
    EXPECT_TRUE(holdsFactorySettings());
    EXPECT_EQ(readFile(fSettingsPath + ".rejected"), oldText);
    EXPECT_THAT(fMessages, ElementsAre(kSettingsChangedMessage));
  }

  // A save fails and leaves the file as it was, alone in its folder, and the helper in peace.
  void expectFailedSave() {
    const std::string before = readFile(fSettingsPath);
    EXPECT_FALSE(fStore.vtxSavePrefsToFile(fStore.fPrefsDict));
    EXPECT_EQ(readFile(fSettingsPath), before);
    EXPECT_THAT(fMessages, IsEmpty());
    EXPECT_TRUE(fStore.saveError().has_value());
  }

  void expectSaveThatRepairs() {
    EXPECT_TRUE(fStore.vtxSavePrefsToFile(fStore.fPrefsDict));
    EXPECT_TRUE(plist::equal(readPlist(fSettingsPath), fStore.fPrefsDict));
    EXPECT_THAT(fMessages, ElementsAre(kSettingsChangedMessage));
    EXPECT_FALSE(fStore.saveError().has_value());
  }

  // Loads the user's settings and changes them.
  void loadAndChange() {
    writePlist(fSettingsPath, users());
    ASSERT_TRUE(fStore.loadDocument());
    fStore.fPrefsDict.set("changed", true);
  }

  std::string fFolderOfFile = fHome + "/Library/Preferences";
};

TEST_F(UserFile, OfVersionOneIsKeptAside) {
  auto document = users();
  document.set("version", 1);
  expectKept(plist::writeXml(document).value());
}

TEST_F(UserFile, WithoutAnyDeviceIsKeptAside) {
  expectKept(plist::writeXml(documentOf({})).value());
}

TEST_F(UserFile, ThatIsNoPropertyListIsKeptAside) {
  expectKept("<plist><dict><key>half");
}

TEST_F(UserFile, ThatIsEmptyIsKeptAside) {
  expectKept("");
}

TEST_F(UserFile, WhoseRootIsNoDictionaryIsKeptAside) {
  expectKept("(1, 2, 3)");
}

TEST_F(UserFile, KeptAsideNeverReplacesAnEarlierOne) {
  writeFile(fSettingsPath + ".rejected", "earlier");
  writeFile(fSettingsPath, "bad");
  fStore.newVTXPrefsFromFile();
  EXPECT_EQ(readFile(fSettingsPath + ".rejected"), "earlier");
  EXPECT_EQ(readFile(fSettingsPath + ".rejected.2"), "bad");
}

TEST_F(UserFile, ThatMayNotBeReadIsKeptAside) {
  writeFile(fSettingsPath, "secret");
  ASSERT_EQ(chmod(fSettingsPath.c_str(), 0), 0);
  ASSERT_EQ(chmod(fFolder.path().c_str(), 0777), 0);
  ASSERT_EQ(chmod(fFolderOfFile.c_str(), 0777), 0);
  {
    const ScopedOrdinaryUser user;
    EXPECT_TRUE(plist::equal(fStore.newVTXPrefsFromFile(), factory()));
  }
  EXPECT_TRUE(holdsFactorySettings());
  ASSERT_EQ(chmod((fSettingsPath + ".rejected").c_str(), 0600), 0);
  EXPECT_EQ(readFile(fSettingsPath + ".rejected"), "secret");
}

TEST_F(UserFile, ThatIsAFolderIsKeptAside) {
  writeFile(fSettingsPath + "/inside", "text");
  EXPECT_TRUE(plist::equal(fStore.newVTXPrefsFromFile(), factory()));
  EXPECT_TRUE(holdsFactorySettings());
  EXPECT_EQ(readFile(fSettingsPath + ".rejected/inside"), "text");
}

TEST_F(UserFile, ThatIsNoGoodStaysWhenThereAreNoFactorySettings) {
  std::filesystem::remove(fDefaultsPath);
  writeFile(fSettingsPath, "bad");
  EXPECT_TRUE(fStore.newVTXPrefsFromFile().isNull());
  EXPECT_EQ(readFile(fSettingsPath), "bad");
  EXPECT_THAT(namesIn(fFolderOfFile), ElementsAre("com.aldmoor.veltrix.settings.plist"));
}

TEST_F(UserFile, ThatIsNoGoodStaysInPlaceWhileTheDiskIsFull) {
  writeFile(fSettingsPath, "bad");
  {
    const ScopedFileCalls full(callsThatFindTheDiskFull());
    ASSERT_TRUE(fStore.loadDocument());
  }
  EXPECT_EQ(fStore.vtxGetSettingsArray().count(), 1U);
  EXPECT_EQ(readFile(fSettingsPath), "bad");
  EXPECT_THAT(namesIn(fFolderOfFile), ElementsAre("com.aldmoor.veltrix.settings.plist"));
  EXPECT_THAT(fMessages, IsEmpty());
  expectSaveThatRepairs();
  EXPECT_EQ(readFile(fSettingsPath + ".rejected"), "bad");
}

TEST_F(UserFile, ThatCannotBeKeptAsideIsNotWrittenOver) {
  writeFile(fSettingsPath, "bad");
  FileCalls calls;
  calls.renameUnlessTaken = [](int, const char*, int, const char*) {
    errno = EIO;
    return -1;
  };
  {
    const ScopedFileCalls failing(calls);
    ASSERT_TRUE(fStore.loadDocument());
    EXPECT_FALSE(fStore.vtxSavePrefsToFile(fStore.fPrefsDict));
  }
  EXPECT_EQ(readFile(fSettingsPath), "bad");
  EXPECT_THAT(fMessages, IsEmpty());
  expectSaveThatRepairs();
  EXPECT_EQ(readFile(fSettingsPath + ".rejected"), "bad");
}

TEST_F(UserFile, ThatHasGoneSinceItWasRejectedIsSimplyWritten) {
  writeFile(fSettingsPath, "bad");
  {
    const ScopedFileCalls full(callsThatFindTheDiskFull());
    ASSERT_TRUE(fStore.loadDocument());
  }
  std::filesystem::remove(fSettingsPath);
  expectSaveThatRepairs();
}

TEST_F(UserFile, IsKeptAsideOnceAndThenReplacedInPlace) {
  writeFile(fSettingsPath, "bad");
  ASSERT_TRUE(fStore.loadDocument());
  ASSERT_TRUE(fStore.vtxSavePrefsToFile(fStore.fPrefsDict));
  EXPECT_THAT(namesIn(fFolderOfFile), ElementsAre("com.aldmoor.veltrix.settings.plist",
                                                  "com.aldmoor.veltrix.settings.plist.rejected"));
}

TEST_F(UserFile, ThatIsMissingIsNotWrittenOnAFullDiskAndTheFactorySettingsServe) {
  const ScopedFileCalls full(callsThatFindTheDiskFull());
  EXPECT_TRUE(plist::equal(fStore.newVTXPrefsFromFile(), factory()));
  EXPECT_FALSE(std::filesystem::exists(fSettingsPath));
  EXPECT_THAT(fMessages, IsEmpty());
}

TEST_F(UserFile, SurvivesAFullDiskAndTheNextSaveRepairsIt) {
  loadAndChange();
  {
    const ScopedFileCalls full(callsThatFindTheDiskFull());
    expectFailedSave();
  }
  EXPECT_THAT(namesIn(fFolderOfFile), ElementsAre("com.aldmoor.veltrix.settings.plist"));
  expectSaveThatRepairs();
}

TEST_F(UserFile, SurvivesADiskThatFillsUpInTheMiddle) {
  loadAndChange();
  {
    const testing::ScopedFileSizeLimit limit(100);
    expectFailedSave();
  }
  EXPECT_THAT(namesIn(fFolderOfFile), ElementsAre("com.aldmoor.veltrix.settings.plist"));
  expectSaveThatRepairs();
}

TEST_F(UserFile, SurvivesAReadOnlyFolderAndTheNextSaveRepairsIt) {
  loadAndChange();
  ASSERT_EQ(chmod(fFolder.path().c_str(), 0755), 0);
  ASSERT_EQ(chmod(fSettingsPath.c_str(), 0644), 0);
  ASSERT_EQ(chmod(fFolderOfFile.c_str(), 0555), 0);
  {
    const ScopedOrdinaryUser user;
    expectFailedSave();
  }
  ASSERT_EQ(chmod(fFolderOfFile.c_str(), 0755), 0);
  EXPECT_THAT(namesIn(fFolderOfFile), ElementsAre("com.aldmoor.veltrix.settings.plist"));
  expectSaveThatRepairs();
}

TEST_F(UserFile, ThatIsNoGoodSurvivesAReadOnlyFolder) {
  writeFile(fSettingsPath, "bad");
  ASSERT_EQ(chmod(fFolder.path().c_str(), 0755), 0);
  ASSERT_EQ(chmod(fSettingsPath.c_str(), 0644), 0);
  ASSERT_EQ(chmod(fFolderOfFile.c_str(), 0555), 0);
  {
    const ScopedOrdinaryUser user;
    ASSERT_TRUE(fStore.loadDocument());
    expectFailedSave();
  }
  ASSERT_EQ(chmod(fFolderOfFile.c_str(), 0755), 0);
  expectSaveThatRepairs();
  EXPECT_EQ(readFile(fSettingsPath + ".rejected"), "bad");
}

TEST_F(UserFile, InAVanishedHomeIsWrittenAgainWhenTheHomeIsBack) {
  loadAndChange();
  std::filesystem::rename(fHome, fHome + ".away");
  writeFile(fHome, "no folder");
  EXPECT_FALSE(fStore.vtxSavePrefsToFile(fStore.fPrefsDict));
  EXPECT_THAT(fMessages, IsEmpty());
  std::filesystem::remove(fHome);
  std::filesystem::rename(fHome + ".away", fHome);
  EXPECT_TRUE(plist::equal(readPlist(fSettingsPath), users()));
  expectSaveThatRepairs();
}

TEST_F(UserFile, InAHomeWithoutTheFoldersGetsThem) {
  loadAndChange();
  std::filesystem::remove_all(fHome);
  expectSaveThatRepairs();
}

TEST_F(UserFile, WithoutAHomeIsNeitherReadNorWritten) {
  auto environment = this->environment();
  environment.settingsPath.clear();
  OpenStore store(environment);
  ASSERT_TRUE(store.loadDocument());
  EXPECT_TRUE(plist::equal(store.vtxGetSettingsArray(), factory().get("devices")));
  EXPECT_FALSE(store.vtxSavePrefsToFile(store.fPrefsDict));
  EXPECT_THAT(fMessages, IsEmpty());
}

TEST_F(UserFile, BehindASymbolicLinkIsReplacedAndTheLinkStays) {
  writePlist(fFolder / "elsewhere/settings.plist", users());
  std::filesystem::create_directories(fFolderOfFile);
  std::filesystem::create_symlink(fFolder / "elsewhere/settings.plist", fSettingsPath);
  ASSERT_TRUE(fStore.loadDocument());
  fStore.fPrefsDict.set("changed", true);
  {
    const ScopedFileCalls full(callsThatFindTheDiskFull());
    expectFailedSave();
  }
  expectSaveThatRepairs();
  EXPECT_TRUE(std::filesystem::is_symlink(fSettingsPath));
  EXPECT_TRUE(plist::equal(readPlist(fFolder / "elsewhere/settings.plist"), fStore.fPrefsDict));
}

TEST_F(UserFile, ThatIsNoGoodBehindASymbolicLinkIsKeptBesideTheTarget) {
  const std::string target = fFolder / "elsewhere/settings.plist";
  writeFile(target, "bad");
  std::filesystem::create_directories(fFolderOfFile);
  std::filesystem::create_symlink(target, fSettingsPath);
  {
    const ScopedFileCalls full(callsThatFindTheDiskFull());
    ASSERT_TRUE(fStore.loadDocument());
  }
  EXPECT_EQ(readFile(target), "bad");
  expectSaveThatRepairs();
  EXPECT_EQ(readFile(target + ".rejected"), "bad");
  EXPECT_TRUE(std::filesystem::is_symlink(fSettingsPath));
}

TEST_F(UserFile, IsNotTouchedByADocumentThatCannotBeWritten) {
  loadAndChange();
  fStore.fPrefsDict.set("itself", fStore.fPrefsDict);
  expectFailedSave();
  EXPECT_FALSE(fStore.vtxSavePrefsToFile({}));
  EXPECT_THAT(fMessages, IsEmpty());
  fStore.fPrefsDict.remove("itself");
  expectSaveThatRepairs();
}

TEST_F(UserFile, StaysRestoredInMemoryWhenSavingTheRestoredEntryFails) {
  writePlist(fSettingsPath, users());
  ASSERT_TRUE(fStore.loadDocument());
  fStore.fSettingsArray.at(0).asDictionary().set("extra", 1);
  const ScopedFileCalls full(callsThatFindTheDiskFull());
  EXPECT_TRUE(fStore.restoreDefaultEntry(0));
  EXPECT_FALSE(fStore.fSettingsArray.at(0).asDictionary().contains("extra"));
  EXPECT_THAT(fMessages, IsEmpty());
}

}  // namespace
}  // namespace veltrix
