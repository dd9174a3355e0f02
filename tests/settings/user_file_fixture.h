#pragma once

#include <gmock/gmock.h>

#include <cerrno>
#include <string>

#include "helperlink/helper_protocol.h"
#include "platform/file_calls.h"
#include "tests/support/store_fixture.h"

// The user's file, good, bad or on a disk that does not take a new one.
namespace veltrix::testing {

inline FileCalls callsThatFindTheDiskFull() {
  FileCalls calls;
  calls.write = [](int, const void*, std::size_t) -> ssize_t {
    errno = ENOSPC;
    return -1;
  };
  return calls;
}

class UserFile : public StoreTest {
 protected:
  UserFile() { writePlist(fDefaultsPath, factory()); }

  static plist::Dictionary factory() { return documentOf({entryOf(1, 0x1020)}); }
  static plist::Dictionary users() { return documentOf({entryOf(1, 0x1020), entryOf(7, 7)}); }

  bool holdsFactorySettings() const { return plist::equal(readPlist(fSettingsPath), factory()); }

  // Loading gives the factory settings, which replace the file; what was there stands beside them.
  void expectKept(const std::string& oldText) {
    writeFile(fSettingsPath, oldText);
    EXPECT_TRUE(plist::equal(fStore.newVTXPrefsFromFile(), factory()));
    EXPECT_TRUE(holdsFactorySettings());
    EXPECT_EQ(readFile(fSettingsPath + ".rejected"), oldText);
    EXPECT_THAT(fMessages, ::testing::ElementsAre(kSettingsChangedMessage));
  }

  // A save fails and leaves the file as it was, alone in its folder, and the helper in peace.
  void expectFailedSave() {
    const std::string before = readFile(fSettingsPath);
    EXPECT_FALSE(fStore.vtxSavePrefsToFile(fStore.fPrefsDict));
    EXPECT_EQ(readFile(fSettingsPath), before);
    EXPECT_THAT(fMessages, ::testing::IsEmpty());
    EXPECT_TRUE(fStore.saveError().has_value());
  }

  void expectSaveThatRepairs() {
    EXPECT_TRUE(fStore.vtxSavePrefsToFile(fStore.fPrefsDict));
    EXPECT_TRUE(plist::equal(readPlist(fSettingsPath), fStore.fPrefsDict));
    EXPECT_THAT(fMessages, ::testing::ElementsAre(kSettingsChangedMessage));
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

}  // namespace veltrix::testing
