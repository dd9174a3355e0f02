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

}  // namespace
}  // namespace veltrix
