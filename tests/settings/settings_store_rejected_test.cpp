#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "helperlink/helper_protocol.h"
#include "tests/settings/user_file_fixture.h"
#include "tests/support/file_failures.h"

// What becomes of the user's file when it is no good.
namespace veltrix {
namespace {

using testing::callsThatFindTheDiskFull;
using testing::documentOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::namesIn;
using testing::readFile;
using testing::ScopedFileCalls;
using testing::ScopedOrdinaryUser;
using testing::UserFile;
using testing::writeFile;

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

}  // namespace
}  // namespace veltrix
