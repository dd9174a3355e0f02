#include "platform/application_search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>

#include "tests/support/environment.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ScopedEnvironment;

TEST(ApplicationSearch, LooksInTheUsersFolderFirst) {
  const ScopedEnvironment own("XDG_DATA_HOME", "/own/");
  const ScopedEnvironment shared("XDG_DATA_DIRS", "/a:relative::/b/:/");
  EXPECT_THAT(standardApplicationSearch().folders,
              ElementsAre("/own/applications", "/a/applications", "/b/applications", "/applications"));
}

TEST(ApplicationSearch, HasTheUsualFoldersWithoutAnEnvironment) {
  const ScopedEnvironment home("HOME", "/home/anna");
  for (const auto& value : {std::optional<std::string>(), std::optional<std::string>("")}) {
    const ScopedEnvironment own("XDG_DATA_HOME", value);
    const ScopedEnvironment shared("XDG_DATA_DIRS", value);
    EXPECT_THAT(standardApplicationSearch().folders,
                ElementsAre("/home/anna/.local/share/applications", "/usr/local/share/applications",
                            "/usr/share/applications"));
  }
}

TEST(ApplicationSearch, TakesProgramsAndDesktopsFromTheEnvironment) {
  const ScopedEnvironment path("PATH", "/bin::.:/usr/bin/");
  const ScopedEnvironment desktop("XDG_CURRENT_DESKTOP", "Classic:Here");
  const ApplicationSearch search = standardApplicationSearch();
  EXPECT_THAT(search.programs, ElementsAre("/bin", "/usr/bin"));
  EXPECT_THAT(search.desktops, ElementsAre("Classic", "Here"));
}

TEST(ApplicationSearch, HasNoLanguageInTheCLocale) {
  const ScopedEnvironment languages("LANGUAGE", "de");
  ASSERT_STREQ(std::setlocale(LC_MESSAGES, "C"), "C");
  EXPECT_THAT(standardApplicationSearch().language, IsEmpty());
}

TEST(ApplicationSearch, PrefersTheFirstLanguageOfTheListToTheLocale) {
  ASSERT_STREQ(std::setlocale(LC_MESSAGES, "C.UTF-8"), "C.UTF-8");
  {
    const ScopedEnvironment languages("LANGUAGE", ":de_AT:fr");
    EXPECT_EQ(standardApplicationSearch().language, "de_AT");
  }
  const ScopedEnvironment languages("LANGUAGE", std::nullopt);
  EXPECT_EQ(standardApplicationSearch().language, "C.UTF-8");
  std::setlocale(LC_MESSAGES, "C");
}

}  // namespace
}  // namespace veltrix
