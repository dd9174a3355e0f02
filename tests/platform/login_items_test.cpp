#include "platform/login_items.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "platform/desktop_entry.h"
#include "tests/support/environment.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::namesIn;
using testing::writeFile;

class Autostart : public ::testing::Test {
 protected:
  void add(const std::string& file, const std::string& text) {
    writeFile(fFolder + "/" + file, "[Desktop Entry]\n" + text);
  }
  // The folder of an application that is there.
  std::string addApplication(const std::string& name) {
    std::filesystem::create_directories(fTemporary / name);
    return fTemporary / name;
  }
  std::vector<std::unique_ptr<LoginItem>> snapshot() {
    auto items = fList->snapshot();
    EXPECT_TRUE(items.ok());
    return items ? std::move(items.value()) : std::vector<std::unique_ptr<LoginItem>>();
  }

  testing::TemporaryFolder fTemporary;
  std::string fFolder = fTemporary / "autostart";
  std::unique_ptr<LoginItemList> fList = openAutostartFolder(fFolder);
};

TEST_F(Autostart, MissingFolderIsAnEmptyList) {
  EXPECT_THAT(snapshot(), IsEmpty());
}

TEST_F(Autostart, PathThatIsNoFolderIsAnError) {
  writeFile(fFolder, "");
  EXPECT_EQ(fList->snapshot().error().code, ENOTDIR);
}

TEST_F(Autostart, ItemsComeInTheOrderOfTheirFiles) {
  add("b.desktop", "Name=second\n");
  add("a.desktop", "Name=first\n");
  add("c.desktop", "Name=third\n");
  add("a.txt", "Name=no entry\n");
  const auto items = snapshot();
  ASSERT_EQ(items.size(), 3U);
  EXPECT_EQ(items[0]->displayName(), "first");
  EXPECT_EQ(items[1]->displayName(), "second");
  EXPECT_EQ(items[2]->displayName(), "third");
}

TEST_F(Autostart, LocationIsTheApplicationThatHoldsTheProgram) {
  const std::string application = addApplication("My 100% Thing.app");
  add("a.desktop", "Exec=\"" + fTemporary.path() + "/My 100%% Thing.app/Thing\" --hidden\n");
  EXPECT_EQ(snapshot().front()->resolve(), application);
}

TEST_F(Autostart, ApplicationThatIsNotThereDoesNotResolve) {
  add("a.desktop", "Name=Gone\nExec=" + (fTemporary / "Gone.app/Gone") + "\n");
  EXPECT_EQ(snapshot().front()->resolve(), std::nullopt);
  EXPECT_EQ(snapshot().front()->displayName(), "Gone");
}

TEST_F(Autostart, ProgramOutsideOfAnApplicationDoesNotResolve) {
  add("a.desktop", "Exec=/bin/true\n");
  add("b.desktop", "Exec=true\n");
  add("c.desktop", "Name=x\n");
  add("d.desktop", "Exec=" + (fTemporary / "a.apps/x") + "\n");
  std::filesystem::create_directory(fTemporary / "a.apps");
  for (const auto& item : snapshot()) {
    EXPECT_EQ(item->resolve(), std::nullopt);
  }
}

TEST_F(Autostart, EntryThatIsSwitchedOffIsStillAnItem) {
  const std::string application = addApplication("Thing.app");
  add("a.desktop", "Hidden=true\nName=Thing\nExec=" + application + "/Thing\n");
  add("b.desktop", "X-GNOME-Autostart-enabled=false\nName=Thing\nExec=" + application + "/Thing\n");
  const auto items = snapshot();
  ASSERT_EQ(items.size(), 2U);
  EXPECT_EQ(items[0]->resolve(), application);
  EXPECT_EQ(items[1]->resolve(), application);
}

TEST_F(Autostart, EmptyNameIsNone) {
  add("a.desktop", "Name=\n");
  EXPECT_EQ(snapshot().front()->displayName(), std::nullopt);
}

TEST_F(Autostart, HostileFilesAreItemsWithoutNameAndLocation) {
  std::filesystem::create_directories(fFolder + "/folder.desktop");
  ASSERT_EQ(mkfifo((fFolder + "/pipe.desktop").c_str(), 0600), 0);
  ASSERT_EQ(symlink("loop.desktop", (fFolder + "/loop.desktop").c_str()), 0);
  ASSERT_EQ(symlink("/dev/zero", (fFolder + "/endless.desktop").c_str()), 0);
  writeFile(fFolder + "/binary.desktop", std::string(100000, '\0'));
  writeFile(fFolder + "/empty.desktop", "");
  const auto items = snapshot();
  ASSERT_EQ(items.size(), 6U);
  for (const auto& item : items) {
    EXPECT_EQ(item->displayName(), std::nullopt);
    EXPECT_EQ(item->resolve(), std::nullopt);
  }
}

TEST_F(Autostart, HugeFileIsReadUpToALimit) {
  add("a.desktop", "Name=early\n" + std::string(3000000, '#') + "\nName=late\n");
  EXPECT_EQ(snapshot().front()->displayName(), "early");
}

TEST_F(Autostart, RemovalDeletesTheFileAndNothingElse) {
  add("a.desktop", "Name=a\n");
  writeFile(fTemporary / "target.desktop", "[Desktop Entry]\nName=b\n");
  ASSERT_EQ(symlink("../target.desktop", (fFolder + "/b.desktop").c_str()), 0);
  add("c.desktop", "Name=c\n");
  const auto items = snapshot();
  EXPECT_TRUE(items[0]->remove().ok());
  EXPECT_TRUE(items[1]->remove().ok());
  EXPECT_THAT(namesIn(fFolder), ElementsAre("c.desktop"));
  EXPECT_TRUE(std::filesystem::exists(fTemporary / "target.desktop"));
  EXPECT_EQ(items[0]->remove().error().code, ENOENT);
}

TEST_F(Autostart, AppendedApplicationIsFoundAgain) {
  const std::string application = addApplication("Some $`\"\\ 50% Thing.app");
  ASSERT_TRUE(fList->append(application).ok());
  const auto items = snapshot();
  ASSERT_EQ(items.size(), 1U);
  EXPECT_EQ(items[0]->resolve(), application);
  EXPECT_EQ(items[0]->displayName(), "Some $`\"\\ 50% Thing");
}

TEST_F(Autostart, AppendingNeverReplacesAFile) {
  const std::string application = addApplication("Thing.app");
  add("Thing.desktop", "Name=somebody else's\n");
  ASSERT_EQ(symlink("nowhere", (fFolder + "/Thing-2.desktop").c_str()), 0);
  ASSERT_TRUE(fList->append(application).ok());
  EXPECT_THAT(testing::readFile(fFolder + "/Thing.desktop"), HasSubstr("somebody else's"));
  EXPECT_THAT(namesIn(fFolder), ElementsAre("Thing-2.desktop", "Thing-3.desktop", "Thing.desktop"));
  EXPECT_FALSE(std::filesystem::exists(fFolder + "/nowhere"));
}

TEST_F(Autostart, FileNameOfAStrangeNameIsTame) {
  ASSERT_TRUE(fList->append("/x/.hidden\n.app").ok());
  ASSERT_TRUE(fList->append("/x/" + std::string(250, 'n') + ".app").ok());
  ASSERT_TRUE(fList->append("/x/.app").ok());
  EXPECT_THAT(namesIn(fFolder),
              ElementsAre("-.desktop", "-.hidden-.desktop", std::string(200, 'n') + ".desktop"));
}

TEST_F(Autostart, FolderThatCannotBeCreatedIsAnError) {
  writeFile(fFolder, "");
  EXPECT_EQ(fList->append("/x/Thing.app").error().code, ENOTDIR);
}

TEST_F(Autostart, UsersListLiesInTheConfigurationFolder) {
  const testing::ScopedEnvironment config("XDG_CONFIG_HOME", fTemporary.path());
  add("a.desktop", "Name=mine\n");
  EXPECT_EQ(openLoginItems()->snapshot().value().front()->displayName(), "mine");
}

}  // namespace
}  // namespace veltrix
