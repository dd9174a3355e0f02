#include "helper/driver_report.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>

#include "driverlink/packet_rules.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

StatusPacket statusOf(DriverAnswer answer, bool outputs = true) {
  auto packet = makePacket<StatusPacket>();
  packet.answer = static_cast<std::uint16_t>(answer);
  packet.outputs = outputs ? 1 : 0;
  std::strcpy(packet.driverVersion, "1.2.3");
  return packet;
}

DeviceStatePacket deviceOf(std::uint32_t number, DeviceCondition condition, std::uint16_t error = 0) {
  auto packet = makePacket<DeviceStatePacket>();
  packet.device = {0xA1D0, 0x2041, 0x107, 0};
  packet.number = number;
  packet.condition = static_cast<std::uint16_t>(condition);
  packet.error = error;
  return packet;
}

TEST(DriverReport, TakesTheGreeting) {
  DriverReport report;
  report.take(statusOf(DriverAnswer::kAccepted));
  EXPECT_TRUE(report.isConnected());
  EXPECT_EQ(report.state, DriverState::kConnected);
  EXPECT_EQ(report.version, "1.2.3");
}

TEST(DriverReport, SaysWhenThereAreNoOutputs) {
  DriverReport report;
  report.take(statusOf(DriverAnswer::kAccepted, false));
  EXPECT_TRUE(report.isConnected());
  EXPECT_EQ(report.state, DriverState::kNoOutputs);
}

TEST(DriverReport, EveryOtherAnswerIsTheReasonWhyThereIsNone) {
  for (const auto& [answer, state] : {std::pair(DriverAnswer::kNotTheActiveUser, DriverState::kOtherUser),
                                      std::pair(DriverAnswer::kStopping, DriverState::kNotRunning),
                                      std::pair(DriverAnswer::kReplaced, DriverState::kReplaced),
                                      std::pair(DriverAnswer::kBrokenRule, DriverState::kIncompatible)}) {
    DriverReport report;
    report.take(statusOf(DriverAnswer::kAccepted));
    report.take(deviceOf(1, DeviceCondition::kTaken));
    report.take(statusOf(answer));
    EXPECT_EQ(report.state, state);
    EXPECT_FALSE(report.isConnected());
    EXPECT_THAT(report.version, IsEmpty());
    EXPECT_THAT(report.devices, IsEmpty());
  }
}

TEST(DriverReport, FollowsEachTrackball) {
  DriverReport report;
  report.take(deviceOf(1, DeviceCondition::kWaiting));
  report.take(deviceOf(2, DeviceCondition::kBusy, EBUSY));
  report.take(deviceOf(1, DeviceCondition::kTaken));
  ASSERT_THAT(report.devices, SizeIs(2));
  EXPECT_EQ(report.devices[0].condition, DeviceCondition::kTaken);
  EXPECT_EQ(report.devices[1].error, EBUSY);
  report.take(deviceOf(1, DeviceCondition::kDetached));
  report.take(deviceOf(7, DeviceCondition::kDetached));
  ASSERT_THAT(report.devices, SizeIs(1));
  EXPECT_EQ(report.devices[0].number, 2U);
}

TEST(DriverReport, ASocketThatNobodyServesIsADriverThatDoesNotRun) {
  for (const int error : {ENOENT, ENOTDIR, ECONNREFUSED}) {
    EXPECT_EQ(driverStateAfter(error, true), DriverState::kNotRunning);
    EXPECT_EQ(driverStateAfter(error, false), DriverState::kNotInstalled);
  }
  EXPECT_EQ(driverStateAfter(EAGAIN, true), DriverState::kNotRunning);
  EXPECT_EQ(driverStateAfter(EACCES, true), DriverState::kUnreachable);
}

TEST(DriverReport, TheDriverIsInstalledWhereItsUnitIs) {
  const testing::TemporaryFolder folder;
  EXPECT_FALSE(driverIsInstalled({folder.path(), folder / "units"}));
  testing::writeFile(folder / "units/veltrix-driver.service", "");
  EXPECT_TRUE(driverIsInstalled({folder.path(), folder / "units"}));
}

TEST(DriverReport, HasAWordForEachStateAndCondition) {
  EXPECT_STREQ(driverStateText(DriverState::kUnused), "unused");
  EXPECT_STREQ(driverStateText(DriverState::kConnecting), "connecting");
  EXPECT_STREQ(driverStateText(DriverState::kConnected), "connected");
  EXPECT_STREQ(driverStateText(DriverState::kNoOutputs), "no-outputs");
  EXPECT_STREQ(driverStateText(DriverState::kNotInstalled), "not-installed");
  EXPECT_STREQ(driverStateText(DriverState::kNotRunning), "not-running");
  EXPECT_STREQ(driverStateText(DriverState::kUnreachable), "unreachable");
  EXPECT_STREQ(driverStateText(DriverState::kOtherUser), "other-user");
  EXPECT_STREQ(driverStateText(DriverState::kReplaced), "replaced");
  EXPECT_STREQ(driverStateText(DriverState::kIncompatible), "incompatible");
  EXPECT_STREQ(deviceConditionText(DeviceCondition::kDetached), "detached");
  EXPECT_STREQ(deviceConditionText(DeviceCondition::kLeftAlone), "left-alone");
  EXPECT_STREQ(deviceConditionText(DeviceCondition::kWaiting), "waiting");
  EXPECT_STREQ(deviceConditionText(DeviceCondition::kTaken), "taken");
  EXPECT_STREQ(deviceConditionText(DeviceCondition::kBusy), "busy");
  EXPECT_STREQ(deviceConditionText(DeviceCondition::kFailed), "failed");
}

}  // namespace
}  // namespace veltrix
