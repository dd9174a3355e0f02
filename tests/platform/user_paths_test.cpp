#include "platform/user_paths.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "tests/support/environment.h"

namespace veltrix {
namespace {

using testing::ScopedEnvironment;

TEST(HomeDirectory, IsTheOneOfTheEnvironmentWithoutFinalSlash) {
  const ScopedEnvironment home("HOME", "/somewhere/anna//");
  EXPECT_EQ(homeDirectory(), "/somewhere/anna");
}

TEST(HomeDirectory, RootFolderStaysAPath) {
  const ScopedEnvironment home("HOME", "/");
  const ScopedEnvironment config("XDG_CONFIG_HOME", std::nullopt);
  EXPECT_EQ(homeDirectory(), "/");
  EXPECT_EQ(configDirectory(), "/.config");
}

TEST(HomeDirectory, ComesFromThePasswordDatabaseWithoutAnAbsoluteOne) {
  const passwd* entry = getpwuid(geteuid());
  const std::string expected = entry != nullptr ? entry->pw_dir : "";
  for (const auto& value : {std::optional<std::string>(), std::optional<std::string>(""),
                            std::optional<std::string>("relative/home")}) {
    const ScopedEnvironment home("HOME", value);
    EXPECT_EQ(homeDirectory(), expected);
  }
}

TEST(ConfigDirectory, IsTheOneOfTheEnvironmentWhenAbsolute) {
  const ScopedEnvironment home("HOME", "/home/anna");
  const ScopedEnvironment config("XDG_CONFIG_HOME", "/elsewhere/config/");
  EXPECT_EQ(configDirectory(), "/elsewhere/config");
}

TEST(ConfigDirectory, LiesInTheHomeFolderOtherwise) {
  const ScopedEnvironment home("HOME", "/home/anna");
  for (const auto& value : {std::optional<std::string>(), std::optional<std::string>(""),
                            std::optional<std::string>("relative")}) {
    const ScopedEnvironment config("XDG_CONFIG_HOME", value);
    EXPECT_EQ(configDirectory(), "/home/anna/.config");
  }
}

TEST(ConfigDirectories, BeginWithTheUsers) {
  const ScopedEnvironment home("HOME", "/home/anna");
  const ScopedEnvironment own("XDG_CONFIG_HOME", std::nullopt);
  const ScopedEnvironment shared("XDG_CONFIG_DIRS", "/etc/xdg-gnome/:relative::/etc/xdg");
  EXPECT_EQ(configDirectories(),
            (std::vector<std::string>{"/home/anna/.config", "/etc/xdg-gnome", "/etc/xdg"}));
}

TEST(ConfigDirectories, HaveAUsualOneBehindTheUsers) {
  const ScopedEnvironment own("XDG_CONFIG_HOME", "/config");
  for (const auto& value : {std::optional<std::string>(), std::optional<std::string>("")}) {
    const ScopedEnvironment shared("XDG_CONFIG_DIRS", value);
    EXPECT_EQ(configDirectories(), (std::vector<std::string>{"/config", "/etc/xdg"}));
  }
}

TEST(AbbreviatedPath, StartsWithATildeInTheHomeFolder) {
  const ScopedEnvironment home("HOME", "/home/anna/");
  EXPECT_EQ(abbreviatedPath("/home/anna/notes.txt"), "~/notes.txt");
  EXPECT_EQ(abbreviatedPath("/home/anna"), "~");
  EXPECT_EQ(abbreviatedPath("/home/anna/"), "~/");
}

TEST(AbbreviatedPath, LeavesPathsOutsideTheHomeFolderAlone) {
  const ScopedEnvironment home("HOME", "/home/anna");
  for (const char* path : {"/home/annabel/notes.txt", "/home", "/etc/home/anna", "home/anna", ""}) {
    EXPECT_EQ(abbreviatedPath(path), path);
  }
}

TEST(AbbreviatedPath, RootAsHomeFolderShortensNothing) {
  const ScopedEnvironment home("HOME", "/");
  EXPECT_EQ(abbreviatedPath("/etc/hosts"), "/etc/hosts");
}

}  // namespace
}  // namespace veltrix
