#include "editor/chosen_application.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>

#include "tests/support/temporary_folder.h"

namespace veltrix {

void PrintTo(const ChosenApplication& chosen, std::ostream* out) {
  *out << "(" << chosen.name << ", " << chosen.identifier << ")";
}

namespace {

using testing::writeFile;

class ChosenApplicationTest : public ::testing::Test {
 protected:
  ChosenApplicationTest() { search.folders = {home / "share/applications"}; }

  // An application folder whose property list has these keys.
  std::string makeFolder(const std::string& name, const std::string& keys) const {
    writeFile(home / (name + "/Contents/Info.plist"), "<plist><dict>" + keys + "</dict></plist>");
    return home / name;
  }
  ChosenApplication chosen(const std::string& path) const { return chosenApplication(path, search); }

  testing::TemporaryFolder home;
  ApplicationSearch search;
};

TEST_F(ChosenApplicationTest, AnApplicationFolderSaysItsNameAndIdentifier) {
  const std::string path = makeFolder("Sums.app",
                                      "<key>CFBundleName</key><string>Great Sums</string>"
                                      "<key>CFBundleIdentifier</key><string>org.sums</string>");
  EXPECT_EQ(chosen(path), (ChosenApplication{"Great Sums", "org.sums"}));
  EXPECT_EQ(chosen(path + "//"), (ChosenApplication{"Great Sums", "org.sums"}));
}

TEST_F(ChosenApplicationTest, AFolderWithoutANameIsCalledAsItsFolderWithoutTheEnding) {
  const std::string path = makeFolder("Sums.app", "<key>CFBundleIdentifier</key><string>org.sums</string>");
  EXPECT_EQ(chosen(path), (ChosenApplication{"Sums", "org.sums"}));
}

TEST_F(ChosenApplicationTest, AFolderWithoutAnIdentifierHasAnEmptyOne) {
  const std::string path = makeFolder("Sums.app", "<key>CFBundleName</key><string>Great Sums</string>");
  EXPECT_EQ(chosen(path), (ChosenApplication{"Great Sums", ""}));
}

TEST_F(ChosenApplicationTest, ANameLosesItsEndingToo) {
  const std::string path = makeFolder("Sums.app", "<key>CFBundleName</key><string>Other.app</string>");
  EXPECT_EQ(chosen(path), (ChosenApplication{"Other", ""}));
}

TEST_F(ChosenApplicationTest, ValuesOfOtherTypesCountAsMissing) {
  const std::string path = makeFolder("Sums.app",
                                      "<key>CFBundleName</key><integer>1</integer>"
                                      "<key>CFBundleIdentifier</key><array/>");
  EXPECT_EQ(chosen(path), (ChosenApplication{"Sums", ""}));
}

TEST_F(ChosenApplicationTest, AFolderThatCannotBeReadIsCalledAsItsLastComponent) {
  std::filesystem::create_directories(home / "Empty.app");
  writeFile(home / "Broken.app/Contents/Info.plist", "<plist><dict>");
  writeFile(home / "List.app/Contents/Info.plist", "<plist><array/></plist>");
  EXPECT_EQ(chosen(home / "Empty.app"), (ChosenApplication{"Empty", ""}));
  EXPECT_EQ(chosen(home / "Broken.app"), (ChosenApplication{"Broken", ""}));
  EXPECT_EQ(chosen(home / "List.app"), (ChosenApplication{"List", ""}));
  EXPECT_EQ(chosen(home / "Missing.app"), (ChosenApplication{"Missing", ""}));
}

TEST_F(ChosenApplicationTest, ADesktopEntryHasItsNameAndIdentifier) {
  const std::string path = home / "share/applications/office/writer.desktop";
  writeFile(path, "[Desktop Entry]\nType=Application\nName=Writer.app\nExec=/bin/true\n");
  EXPECT_EQ(chosen(path), (ChosenApplication{"Writer", "office-writer"}));
}

TEST_F(ChosenApplicationTest, ADesktopEntryElsewhereHasItsPathAsIdentifier) {
  const std::string path = home / "writer.desktop";
  writeFile(path, "[Desktop Entry]\nType=Application\nName=Writer\nExec=/bin/true\n");
  EXPECT_EQ(chosen(path), (ChosenApplication{"Writer", path}));
}

TEST_F(ChosenApplicationTest, AProgramHasItsPathAsIdentifier) {
  writeFile(home / "bin/tool", "#!/bin/sh\n");
  std::filesystem::permissions(home / "bin/tool", std::filesystem::perms::owner_all);
  EXPECT_EQ(chosen(home / "bin/tool"), (ChosenApplication{"tool", home / "bin/tool"}));
}

TEST_F(ChosenApplicationTest, AnythingElseHasNoIdentifier) {
  writeFile(home / "notes.txt", "");
  writeFile(home / "broken.desktop", "");
  EXPECT_EQ(chosen(home / "notes.txt"), (ChosenApplication{"notes.txt", ""}));
  EXPECT_EQ(chosen(home / "broken.desktop"), (ChosenApplication{"broken.desktop", ""}));
  EXPECT_EQ(chosen("/"), (ChosenApplication{"/", ""}));
  EXPECT_EQ(chosen(""), (ChosenApplication{"", ""}));
}

}  // namespace
}  // namespace veltrix
