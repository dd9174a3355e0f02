#include "driver/driver_options.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

using Action = DriverOptions::Action;

TEST(DriverOptions, WithoutArgumentsItServesTheUserAtTheScreen) {
  const DriverOptions options = parseDriverOptions({});
  EXPECT_EQ(options.action, Action::kRun);
  EXPECT_EQ(options.socketPath, "/run/veltrix/driver.sock");
  EXPECT_FALSE(options.user);
}

TEST(DriverOptions, TakesValuesInBothSpellings) {
  DriverOptions options = parseDriverOptions({"--socket", "/tmp/a", "--user=1000"});
  EXPECT_EQ(options.action, Action::kRun);
  EXPECT_EQ(options.socketPath, "/tmp/a");
  EXPECT_EQ(options.user, 1000U);
  options = parseDriverOptions({"--user", "0", "--socket=/tmp/b"});
  EXPECT_EQ(options.socketPath, "/tmp/b");
  EXPECT_EQ(options.user, 0U);
}

TEST(DriverOptions, RefusesWhatMeansNothing) {
  for (const std::vector<std::string>& bad : std::vector<std::vector<std::string>>{{"--socket"},
                                                                                   {"--socket="},
                                                                                   {"--user"},
                                                                                   {"--user="},
                                                                                   {"--user", "root"},
                                                                                   {"--user", "-1"},
                                                                                   {"--user", "4294967295"},
                                                                                   {"--user", "4294967296"},
                                                                                   {"--user", "1x"},
                                                                                   {"--users=1"},
                                                                                   {"start"},
                                                                                   {""}}) {
    const DriverOptions options = parseDriverOptions(bad);
    EXPECT_EQ(options.action, Action::kRefuse) << bad[0];
    EXPECT_FALSE(options.error.empty());
  }
}

TEST(DriverOptions, HelpAndVersionComeFirst) {
  EXPECT_EQ(parseDriverOptions({"--socket=/tmp/a", "--help", "nonsense"}).action, Action::kShowHelp);
  EXPECT_EQ(parseDriverOptions({"-h"}).action, Action::kShowHelp);
  EXPECT_EQ(parseDriverOptions({"--version"}).action, Action::kShowVersion);
}

}  // namespace
}  // namespace veltrix
