#include "helper/desktop/user_folders.h"

#include <gtest/gtest.h>

#include "tests/helper/desktop/desktop_fixture.h"

namespace veltrix {
namespace {

class UserFolders : public testing::DesktopFixture {};

std::string documents(std::string_view bytes) {
  return readUserFolder(bytes, "DOCUMENTS", "/home/anna");
}

TEST(ReadUserFolder, FolderLiesBelowTheHomeFolderOrIsAbsolute) {
  EXPECT_EQ(documents("# comment\nXDG_DOCUMENTS_DIR=\"$HOME/My Texts/\"\n"), "/home/anna/My Texts");
  EXPECT_EQ(documents("XDG_DOCUMENTS_DIR=\"/srv/texts\""), "/srv/texts");
  EXPECT_EQ(documents("XDG_DOCUMENTS_DIR=\"$HOME\"\n"), "/home/anna");
  EXPECT_EQ(documents("  XDG_DOCUMENTS_DIR=\"/a\\\"b\\\\c\\$d\"\r\n"), "/a\"b\\c$d");
}

TEST(ReadUserFolder, LastOfTwoCounts) {
  EXPECT_EQ(documents("XDG_DOCUMENTS_DIR=\"/a\"\nXDG_DOCUMENTS_DIR=\"/b\"\nXDG_DOCUMENTS_DIR=\"c\"\n"), "/b");
}

TEST(ReadUserFolder, AnythingElseNamesNone) {
  for (const char* text : {"", "XDG_DOCUMENTS_DIR=/a", "XDG_DOCUMENTS_DIR=\"a\"", "#XDG_DOCUMENTS_DIR=\"/a\"",
                           "XDG_DOCUMENTS_DIR=\"$HOMER/a\"", "XDG_DOCUMENTS_DIR=\"$(reboot)\"",
                           "XDG_DOWNLOAD_DIR=\"/a\"", "XDG_DOCUMENTS_DIR=\"~/a\"", "XDG_DOCUMENTS_DIR=\""}) {
    EXPECT_EQ(documents(text), "") << text;
  }
}

TEST_F(UserFolders, FileOfTheUserNamesThem) {
  testing::writeFile(home() + "/.config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/In\"\n");
  EXPECT_EQ(userFolder("DOWNLOAD", "Downloads"), home() + "/In");
}

TEST_F(UserFolders, WithoutTheFileTheyHaveTheirUsualNames) {
  EXPECT_EQ(userFolder("DOCUMENTS", "Documents"), home() + "/Documents");
}

}  // namespace
}  // namespace veltrix
