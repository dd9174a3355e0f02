#include "helper/helper_options.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

using Action = HelperOptions::Action;

TEST(HelperOptions, WithoutArgumentsRunsWithTheRealDevices) {
  const HelperOptions options = parseHelperOptions({});
  EXPECT_EQ(options.action, Action::kRun);
  EXPECT_FALSE(options.simulated.has_value());
}

TEST(HelperOptions, SimulatesInBothSpellings) {
  for (const auto& arguments : {std::vector<std::string>{"--simulate", "A1D0:2041:0107"},
                                std::vector<std::string>{"--simulate=A1D0:2041:0107"}}) {
    const HelperOptions options = parseHelperOptions(arguments);
    EXPECT_EQ(options.action, Action::kRun);
    ASSERT_EQ(options.simulated.value().size(), 1U);
    EXPECT_EQ(options.simulated->front().productId, 0x2041);
  }
}

TEST(HelperOptions, SimulatesNoDeviceAtAll) {
  EXPECT_TRUE(parseHelperOptions({"--simulate", ""}).simulated.value().empty());
}

TEST(HelperOptions, NamesTheDriversSocketInBothSpellings) {
  EXPECT_FALSE(parseHelperOptions({}).driverSocket.has_value());
  EXPECT_EQ(parseHelperOptions({"--driver-socket", "/tmp/s"}).driverSocket, "/tmp/s");
  const HelperOptions both = parseHelperOptions({"--simulate=", "--driver-socket=/tmp/s"});
  EXPECT_EQ(both.driverSocket, "/tmp/s");
  EXPECT_TRUE(both.simulated.has_value());
}

TEST(HelperOptions, RefusesADriverSocketWithoutAPath) {
  for (const auto& arguments :
       {std::vector<std::string>{"--driver-socket"}, std::vector<std::string>{"--driver-socket="}}) {
    EXPECT_EQ(parseHelperOptions(arguments).error, "--driver-socket needs the path of the driver's socket");
  }
}

TEST(HelperOptions, ShowsHelpAndVersion) {
  EXPECT_EQ(parseHelperOptions({"--help"}).action, Action::kShowHelp);
  EXPECT_EQ(parseHelperOptions({"-h"}).action, Action::kShowHelp);
  EXPECT_EQ(parseHelperOptions({"--version"}).action, Action::kShowVersion);
}

TEST(HelperOptions, RefusesWhatItDoesNotKnowAndNamesIt) {
  EXPECT_EQ(parseHelperOptions({"--simulated"}).action, Action::kRefuse);
  EXPECT_EQ(parseHelperOptions({"extra"}).error, "unknown option \"extra\"");
  EXPECT_EQ(parseHelperOptions({"--simulate"}).error, "--simulate needs the devices to simulate");
  EXPECT_EQ(parseHelperOptions({"--simulate", "2041"}).error, "\"2041\" is not VENDOR:PRODUCT:VERSION[,...]");
}

}  // namespace
}  // namespace veltrix
