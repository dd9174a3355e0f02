#include "platform/installed_applications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::writeFile;

class InstalledApplicationsTest : public ::testing::Test {
 protected:
  InstalledApplicationsTest() {
    search.folders = {home / "own", home / "shared"};
    search.programs = {home / "bin"};
  }

  // An entry of the usual kind with further lines.
  static std::string entry(const std::string& name, const std::string& more = "") {
    return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=/bin/true %U\n" + more;
  }
  void add(const std::string& file, const std::string& text) { writeFile(home / file, text); }

  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const InstalledApplication& each : installedApplications(search)) {
      all.push_back(each.name);
    }
    return all;
  }
  std::vector<std::string> identifiers() const {
    std::vector<std::string> all;
    for (const InstalledApplication& each : installedApplications(search)) {
      all.push_back(each.identifier);
    }
    return all;
  }

  testing::TemporaryFolder home;
  ApplicationSearch search;
};

TEST_F(InstalledApplicationsTest, CarriesWhatAnEntrySays) {
  add("own/sums.desktop", entry("Sums", "Comment=Adds\nIcon=sums\nKeywords=plus;minus\n"));
  const auto all = installedApplications(search);
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].identifier, "sums");
  EXPECT_EQ(all[0].name, "Sums");
  EXPECT_EQ(all[0].comment, "Adds");
  EXPECT_EQ(all[0].icon, "sums");
  EXPECT_THAT(all[0].keywords, ElementsAre("plus", "minus"));
  EXPECT_THAT(all[0].arguments, ElementsAre("/bin/true"));
  EXPECT_EQ(all[0].path, home / "own/sums.desktop");
}

TEST_F(InstalledApplicationsTest, CarriesHowItIsStarted) {
  add("own/sums.desktop", entry("Sums", "Terminal=true\nPath=/srv\nDBusActivatable=true\n"));
  const auto sums = installedApplication("sums", search);
  ASSERT_TRUE(sums);
  EXPECT_TRUE(sums->terminal && sums->busActivatable);
  EXPECT_EQ(sums->folder, "/srv");
}

TEST_F(InstalledApplicationsTest, AreInTheOrderOfTheirNamesAndThenOfTheirIdentifiers) {
  add("own/z.desktop", entry("Alpha"));
  add("own/c.desktop", entry("Beta"));
  add("shared/b.desktop", entry("Beta"));
  EXPECT_THAT(names(), ElementsAre("Alpha", "Beta", "Beta"));
  EXPECT_THAT(identifiers(), ElementsAre("z", "b", "c"));
}

TEST_F(InstalledApplicationsTest, SubfoldersAreJoinedToTheIdentifierWithADash) {
  add("own/office/text/writer.desktop", entry("Writer"));
  EXPECT_THAT(identifiers(), ElementsAre("office-text-writer"));
}

TEST_F(InstalledApplicationsTest, TheFirstFolderThatHasAnEntryWins) {
  add("own/sums.desktop", entry("Mine"));
  add("shared/sums.desktop", entry("Theirs"));
  EXPECT_THAT(names(), ElementsAre("Mine"));
}

TEST_F(InstalledApplicationsTest, AnEntryThatIsNotShownHidesThoseBehindIt) {
  add("own/a.desktop", entry("A", "Hidden=true\n"));
  add("own/b.desktop", entry("B", "NoDisplay=true\n"));
  add("own/c.desktop", "[Desktop Entry]\nHidden=true\n");
  for (const char* file : {"shared/a.desktop", "shared/b.desktop", "shared/c.desktop"}) {
    add(file, entry(file));
  }
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(InstalledApplicationsTest, AFileThatSaysNothingIsPassedOver) {
  add("own/sums.desktop", "\xFF\xFE\n[Desktop\n");
  std::filesystem::create_directories(home / "own/folder.desktop");
  ASSERT_EQ(mkfifo((home / "own/pipe.desktop").c_str(), 0600), 0);
  std::filesystem::create_symlink(home / "nowhere", home / "own/gone.desktop");
  for (const char* name : {"sums", "folder", "pipe", "gone"}) {
    add(std::string("shared/") + name + ".desktop", entry(name));
  }
  EXPECT_THAT(names(), ElementsAre("folder", "gone", "pipe", "sums"));
}

TEST_F(InstalledApplicationsTest, MissingFoldersHoldNone) {
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(InstalledApplicationsTest, OnlyCompleteEntriesOfApplicationsCount) {
  add("own/link.desktop", "[Desktop Entry]\nType=Link\nName=Link\nExec=/bin/true\n");
  add("own/untyped.desktop", "[Desktop Entry]\nName=Untyped\nExec=/bin/true\n");
  add("own/nameless.desktop", "[Desktop Entry]\nType=Application\nExec=/bin/true\n");
  add("own/idle.desktop", "[Desktop Entry]\nType=Application\nName=Idle\n");
  add("own/odd.desktop", "[Desktop Entry]\nType=Application\nName=Odd\nExec=\"/bin/true\n");
  add("own/bus.desktop", "[Desktop Entry]\nType=Application\nName=Bus\nDBusActivatable=true\n");
  add("own/.desktop", entry("No identifier"));
  add("own/notes.txt", entry("No entry"));
  EXPECT_THAT(names(), ElementsAre("Bus"));
}

TEST_F(InstalledApplicationsTest, DesktopsThatAnEntryNamesDecide) {
  add("own/1.desktop", entry("Everywhere"));
  add("own/2.desktop", entry("OnlyHere", "OnlyShowIn=Here;Else;\n"));
  add("own/3.desktop", entry("OnlyElse", "OnlyShowIn=Else;\n"));
  add("own/4.desktop", entry("NotHere", "NotShowIn=Here;\n"));
  add("own/5.desktop", entry("NotElse", "NotShowIn=Else;\n"));
  search.desktops = {"Here"};
  EXPECT_THAT(names(), ElementsAre("Everywhere", "NotElse", "OnlyHere"));
  search.desktops = {};
  EXPECT_THAT(names(), ElementsAre("Everywhere", "NotElse", "NotHere"));
}

TEST_F(InstalledApplicationsTest, TheMostParticularNameOfADesktopDecidesFirst) {
  add("own/a.desktop", entry("A", "OnlyShowIn=Classic;\nNotShowIn=Here;\n"));
  add("own/b.desktop", entry("B", "OnlyShowIn=Here;\nNotShowIn=Classic;\n"));
  search.desktops = {"Classic", "Here"};
  EXPECT_THAT(names(), ElementsAre("A"));
}

TEST_F(InstalledApplicationsTest, TryExecMustBeAProgram) {
  add("bin/there", "#!/bin/sh\n");
  std::filesystem::permissions(home / "bin/there", std::filesystem::perms::owner_all);
  add("bin/data", "");
  add("own/1.desktop", entry("Found", "TryExec=there\n"));
  add("own/2.desktop", entry("FoundByPath", "TryExec=" + (home / "bin/there") + "\n"));
  add("own/3.desktop", entry("Lost", "TryExec=missing\n"));
  add("own/4.desktop", entry("NotAProgram", "TryExec=data\n"));
  add("own/5.desktop", entry("AFolder", "TryExec=" + (home / "bin") + "\n"));
  add("own/6.desktop", entry("Relative", "TryExec=bin/there\n"));
  EXPECT_THAT(names(), ElementsAre("Found", "FoundByPath"));
}

TEST_F(InstalledApplicationsTest, NamesComeInTheUsersLanguage) {
  add("own/sums.desktop", entry("Sums", "Name[de]=Summen\n"));
  search.language = "de_DE.UTF-8";
  EXPECT_THAT(names(), ElementsAre("Summen"));
}

TEST_F(InstalledApplicationsTest, LinksToFoldersAreNotFollowed) {
  add("own/a.desktop", entry("A"));
  std::filesystem::create_directory_symlink(home / "own", home / "own/again");
  EXPECT_THAT(identifiers(), ElementsAre("a"));
}

TEST_F(InstalledApplicationsTest, LinksToEntriesAre) {
  add("elsewhere/a.desktop", entry("A"));
  std::filesystem::create_directories(home / "own");
  std::filesystem::create_symlink(home / "elsewhere/a.desktop", home / "own/a.desktop");
  EXPECT_THAT(identifiers(), ElementsAre("a"));
}

TEST_F(InstalledApplicationsTest, TextsCanAlwaysBeShownAndStored) {
  add("own/a.desktop", entry("A\x01\xFF\\nB\xEF\xBF\xBE", "Comment=\x7F\n"));
  const auto all = installedApplications(search);
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].name, "A \xEF\xBF\xBD B\xEF\xBF\xBD");
  EXPECT_EQ(all[0].comment, " ");
}

TEST_F(InstalledApplicationsTest, FileNamesThatCannotBeStoredArePassedOver) {
  add("own/a\xFF.desktop", entry("A"));
  add("own/b\x01.desktop", entry("B"));
  add("own/c.desktop", entry("C"));
  EXPECT_THAT(names(), ElementsAre("C"));
}

TEST_F(InstalledApplicationsTest, OneIsFoundByItsIdentifierEvenWhenMenusDoNotShowIt) {
  add("own/office/writer.desktop", entry("Writer", "NoDisplay=true\nOnlyShowIn=Else\n"));
  const auto found = installedApplication("office-writer", search);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->path, home / "own/office/writer.desktop");
}

TEST_F(InstalledApplicationsTest, OneThatCannotBeStartedIsNotFound) {
  add("own/a.desktop", entry("A", "Hidden=true\n"));
  add("shared/a.desktop", entry("A"));
  add("own/b.desktop", entry("B", "TryExec=missing\n"));
  EXPECT_FALSE(installedApplication("a", search));
  EXPECT_FALSE(installedApplication("b", search));
  EXPECT_FALSE(installedApplication("c", search));
  EXPECT_FALSE(installedApplication("", search));
}

TEST_F(InstalledApplicationsTest, AnEntryOfAFolderHasItsIdentifier) {
  add("own/office/writer.desktop", entry("Writer"));
  const auto found = applicationOfEntry(home / "own/office/writer.desktop", search);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->identifier, "office-writer");
}

TEST_F(InstalledApplicationsTest, AnEntryThatNoIdentifierLeadsToHasNone) {
  add("own/a.desktop", entry("Mine"));
  add("shared/a.desktop", entry("Theirs"));
  add("elsewhere/b.desktop", entry("Other"));
  for (const char* file : {"shared/a.desktop", "elsewhere/b.desktop"}) {
    const auto found = applicationOfEntry(home / file, search);
    ASSERT_TRUE(found) << file;
    EXPECT_EQ(found->identifier, "");
    EXPECT_EQ(found->path, home / file);
  }
}

TEST_F(InstalledApplicationsTest, AFileThatStartsNothingIsNoApplication) {
  add("own/a.desktop", "nothing");
  EXPECT_FALSE(applicationOfEntry(home / "own/a.desktop", search));
  EXPECT_FALSE(applicationOfEntry(home / "own/b.desktop", search));
}

}  // namespace
}  // namespace veltrix
