#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "helperlink/helper_protocol.h"
#include "tests/settings/user_file_fixture.h"
#include "tests/support/file_failures.h"

// What becomes of the user's file when the disk does not take a new one.
namespace veltrix {
namespace {

using testing::callsThatFindTheDiskFull;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::namesIn;
using testing::OpenStore;
using testing::readPlist;
using testing::ScopedFileCalls;
using testing::ScopedOrdinaryUser;
using testing::UserFile;
using testing::writeFile;
using testing::writePlist;

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
