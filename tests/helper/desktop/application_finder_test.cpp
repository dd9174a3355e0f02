#include "helper/desktop/application_finder.h"

#include <gmock/gmock.h>

#include "tests/helper/desktop/desktop_fixture.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using namespace std::string_literals;

class ApplicationFinder : public testing::DesktopFixture {
 protected:
  ApplicationFinder() {
    addEntry("org.example.Sums", "Name=Sums and More\nExec=/bin/sums --new %U\n");
    writeScript("apps/Painter.app/Painter", "");
    testing::writeFile(fFolder / "apps/Painter.app/Contents/Info.plist",
                       "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
                       "<string>com.example.painter</string></dict></plist>");
    writeScript("apps/Plain.app/Plain", "");
  }

  std::vector<std::string> find(const std::string& identifier, const std::string& path) const {
    const ApplicationPlaces places{standardApplicationSearch(), {fFolder / "missing", fFolder / "apps"}};
    const auto found = findApplication(identifier, path, places);
    return found ? found.value().arguments : std::vector<std::string>{found.error().message};
  }
};

TEST_F(ApplicationFinder, IdentifierOfADesktopEntryLeadsToIt) {
  EXPECT_THAT(find("org.example.Sums", ""), ElementsAre("/bin/sums", "--new"));
  EXPECT_THAT(find("org.example.Sums", "Painter"), ElementsAre("/bin/sums", "--new"));
}

TEST_F(ApplicationFinder, IdentifierOfAnApplicationFolderLeadsToItsProgram) {
  EXPECT_THAT(find("com.example.painter", ""), ElementsAre(fFolder / "apps/Painter.app/Painter"));
}

TEST_F(ApplicationFinder, AbsolutePathIsTakenAsIdentifier) {
  addProgram("tool");
  EXPECT_THAT(find(fFolder / "bin/tool", ""), ElementsAre(fFolder / "bin/tool"));
  EXPECT_THAT(find(fFolder / "apps/Plain.app/", ""), ElementsAre(fFolder / "apps/Plain.app/Plain"));
  EXPECT_THAT(find(fFolder / "data/applications/org.example.Sums.desktop", ""),
              ElementsAre("/bin/sums", "--new"));
}

TEST_F(ApplicationFinder, NameServesWhereTheIdentifierLeadsToNone) {
  for (const char* identifier : {"", "com.example.gone", "/no/such/thing"}) {
    EXPECT_THAT(find(identifier, "Sums and More"), ElementsAre("/bin/sums", "--new"));
    EXPECT_THAT(find(identifier, "Plain"), ElementsAre(fFolder / "apps/Plain.app/Plain"));
    EXPECT_THAT(find(identifier, "org.example.Sums"), ElementsAre("/bin/sums", "--new"));
  }
}

TEST_F(ApplicationFinder, PathIsTakenInPlaceOfAName) {
  writeScript("home/Own.app/Own", "");
  EXPECT_THAT(find("", "~/Own.app"), ElementsAre(home() + "/Own.app/Own"));
  EXPECT_THAT(find("", fFolder / "apps/Painter.app"), ElementsAre(fFolder / "apps/Painter.app/Painter"));
  EXPECT_THAT(find("", "/no/such.app"), ElementsAre("cannot open /no/such.app: No such file or directory"));
}

TEST_F(ApplicationFinder, WhatStartsNothingIsReported) {
  testing::writeFile(fFolder / "etc/text", "");
  testing::writeFile(fFolder / "etc/broken.desktop", "[Desktop Entry]\nName=x\n");
  std::filesystem::create_directories(fFolder / "etc/Empty.app");
  for (const char* name : {"etc/text", "etc/broken.desktop", "etc/Empty.app"}) {
    EXPECT_THAT(find("", fFolder / name),
                ElementsAre("cannot start " + (fFolder / name) + ": it is no application"));
  }
}

TEST_F(ApplicationFinder, MissingOneIsNamed) {
  EXPECT_THAT(find("", ""), ElementsAre("no application is chosen"));
  EXPECT_THAT(find("com.example.gone", ""), ElementsAre("the application com.example.gone is not installed"));
  EXPECT_THAT(find("com.example.gone", "Gone\n"), ElementsAre("the application Gone? is not installed"));
  EXPECT_THAT(find("a\0b"s, ""), ElementsAre("the application a?b is not installed"));
}

TEST_F(ApplicationFinder, ProgramsOfPathAreNoApplications) {
  addProgram("tool");
  EXPECT_THAT(find("tool", "tool"), ElementsAre("the application tool is not installed"));
}

TEST_F(ApplicationFinder, EntriesAndApplicationFoldersAreStarted) {
  EXPECT_TRUE(isApplicationItem(fFolder / "data/applications/org.example.Sums.desktop"));
  EXPECT_TRUE(isApplicationItem(fFolder / "apps/Plain.app"));
  std::filesystem::create_directories(fFolder / "etc/folder.desktop");
  testing::writeFile(fFolder / "etc/file.app", "");
  EXPECT_FALSE(isApplicationItem(fFolder / "etc/folder.desktop"));
  EXPECT_FALSE(isApplicationItem(fFolder / "etc/file.app"));
  EXPECT_FALSE(isApplicationItem(fFolder / "apps"));
}

}  // namespace
}  // namespace veltrix
