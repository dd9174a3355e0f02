#include "helperlink/driver_status.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <mutex>

#include "tests/support/fake_driver.h"
#include "tests/support/helper_process.h"
#include "tests/support/wait_until.h"

namespace veltrix {
namespace {

using ::testing::SizeIs;
using testing::waitUntil;

class DriverStatusTest : public ::testing::Test {
 protected:
  void startWatch() {
    fWatch = std::make_unique<DriverStatusWatch>(
        [this](const DriverStatus& status) {
          const std::lock_guard<std::mutex> lock(fMutex);
          fTold.push_back(status);
        },
        fSession.bus().address());
  }
  void startHelper() { fSession.startHelper({"--simulate", "", "--driver-socket", fPath}); }
  std::vector<DriverStatus> told() {
    const std::lock_guard<std::mutex> lock(fMutex);
    return fTold;
  }
  bool waitFor(const std::function<bool(const DriverStatus&)>& condition) {
    return waitUntil([&] {
      const auto all = told();
      return !all.empty() && condition(all.back());
    });
  }
  bool waitForState(const std::string& state) {
    return waitFor([&](const DriverStatus& status) { return status.helperRuns && status.state == state; });
  }

  testing::TemporaryFolder fFolder;
  std::string fPath = fFolder / "driver.sock";
  testing::FakeDriver fDriver{fPath};
  testing::HelperSession fSession;
  std::mutex fMutex;
  std::vector<DriverStatus> fTold;
  std::unique_ptr<DriverStatusWatch> fWatch;
};

TEST_F(DriverStatusTest, SaysThatNoHelperRuns) {
  startWatch();
  EXPECT_TRUE(waitFor([](const DriverStatus& status) { return !status.helperRuns; }));
}

TEST_F(DriverStatusTest, FollowsTheHelperThatComesAndGoes) {
  startWatch();
  ASSERT_TRUE(waitFor([](const DriverStatus& status) { return !status.helperRuns; }));
  startHelper();
  EXPECT_TRUE(waitForState("connecting"));
  fSession.helper().send(SIGTERM);
  EXPECT_TRUE(waitFor([](const DriverStatus& status) { return !status.helperRuns; }));
}

TEST_F(DriverStatusTest, FollowsTheDriverAndEachTrackball) {
  startHelper();
  startWatch();
  ASSERT_TRUE(fDriver.welcome());
  ASSERT_TRUE(waitForState("connected"));
  EXPECT_EQ(told().back().version, "9.8.7");
  auto device = makePacket<DeviceStatePacket>();
  device.device = {0xA1D0, 0x2041, 0x107, 0};
  device.number = 5;
  device.condition = static_cast<std::uint16_t>(DeviceCondition::kBusy);
  device.error = EBUSY;
  fDriver.send(device);
  ASSERT_TRUE(waitFor([](const DriverStatus& status) { return !status.devices.empty(); }));
  const DriverStatus status = told().back();
  ASSERT_THAT(status.devices, SizeIs(1));
  EXPECT_EQ(status.devices[0],
            (DriverStatusDevice{
                .vendor = 0xA1D0, .product = 0x2041, .version = 0x107, .condition = "busy", .error = EBUSY}));
  fDriver.sendStatus(DriverAnswer::kNotTheActiveUser);
  ASSERT_TRUE(waitForState("other-user"));
  EXPECT_THAT(told().back().devices, SizeIs(0));
}

TEST_F(DriverStatusTest, TellsEachStatusOnce) {
  startHelper();
  startWatch();
  ASSERT_TRUE(fDriver.welcome());
  ASSERT_TRUE(waitForState("connected"));
  const auto all = told();
  for (std::size_t i = 1; i < all.size(); ++i) EXPECT_FALSE(all[i] == all[i - 1]) << i;
}

TEST_F(DriverStatusTest, EndsAtOnceWhateverTheBusDoes) {
  fSession.bus().freeze();
  startWatch();
  fWatch.reset();
  EXPECT_THAT(told(), SizeIs(0));
  fSession.bus().thaw();
}

TEST_F(DriverStatusTest, TellsNothingWithoutABus) {
  const DriverStatusWatch watch([this](const DriverStatus&) { fTold.emplace_back(); },
                                "unix:path=" + (fFolder / "no-bus"));
  EXPECT_THAT(told(), SizeIs(0));
}

}  // namespace
}  // namespace veltrix
