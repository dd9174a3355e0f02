#include "host/uninstaller_options.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

TEST(UninstallerOptions, AreAllOffByDefault) {
  std::string problem;
  const auto options = parseUninstallerOptions({}, &problem);
  ASSERT_TRUE(options);
  EXPECT_FALSE(options->help || options->yes || options->removeSettings);
}

TEST(UninstallerOptions, ComeInAnyOrder) {
  std::string problem;
  const auto options = parseUninstallerOptions({"--remove-settings", "--yes"}, &problem);
  ASSERT_TRUE(options);
  EXPECT_TRUE(options->yes && options->removeSettings && !options->help);
  EXPECT_TRUE(parseUninstallerOptions({"-h"}, &problem)->help);
  EXPECT_TRUE(parseUninstallerOptions({"--help"}, &problem)->help);
}

TEST(UninstallerOptions, WordThatMeansNothingIsNamed) {
  std::string problem;
  EXPECT_FALSE(parseUninstallerOptions({"--yes", "--force"}, &problem));
  EXPECT_EQ(problem, "\"--force\" means nothing here");
  EXPECT_FALSE(parseUninstallerOptions({""}, &problem));
}

}  // namespace
}  // namespace veltrix
