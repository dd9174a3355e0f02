#include "driver/link_server.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>

#include "tests/driver/link_server_fixture.h"

namespace veltrix {
namespace {

using testing::Client;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LinkServerTest;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

TEST_F(LinkServerTest, GreetsTheHelperBeforeItIsReported) {
  start();
  auto client = connect();
  const auto status = client->status();
  ASSERT_TRUE(status);
  EXPECT_EQ(status->answer, 0);
  EXPECT_EQ(status->outputs, 1);
  EXPECT_STREQ(status->driverVersion, "1.2.3");
  EXPECT_THAT(requests.log, ElementsAre("arrived"));
  EXPECT_TRUE(server.connected());
}

TEST_F(LinkServerTest, TellsOfMissingOutputsAndCutsALongVersion) {
  requests.outputs = false;
  LinkServer other(loop, user, requests,
                   {.socketPath = folder / "other", .driverVersion = std::string(30, '7')});
  ASSERT_TRUE(other.start());
  Client client(folder / "other");
  loop.run();
  const auto status = client.status();
  ASSERT_TRUE(status);
  EXPECT_EQ(status->outputs, 0);
  EXPECT_EQ(std::string(status->driverVersion), std::string(23, '7'));
}

TEST_F(LinkServerTest, HandsRequestsOnAndReportsTheEnd) {
  start();
  auto client = admitted();
  client->send(makePacket<MonitorPacket>());
  client->send(makePacket<WithdrawPacket>());
  loop.run();
  client->close();
  loop.run();
  EXPECT_THAT(requests.log, ElementsAre("arrived", "no monitor", "withdraw 0", "gone"));
  EXPECT_FALSE(server.connected());
}

TEST_F(LinkServerTest, SendsWholePackets) {
  start();
  auto client = admitted();
  const auto packet = makePacket<ButtonPacket>();
  server.send(std::as_bytes(std::span(&packet, 1)));
  server.send(std::as_bytes(std::span(&packet, 1)));
  EXPECT_EQ(client->receive(), ssize_t{sizeof packet});
  EXPECT_EQ(client->receive(), ssize_t{sizeof packet});
}

TEST_F(LinkServerTest, WithoutAHelperSendingIsNothing) {
  start();
  const auto packet = makePacket<ButtonPacket>();
  server.send(std::as_bytes(std::span(&packet, 1)));
  EXPECT_THAT(requests.log, IsEmpty());
}

TEST_F(LinkServerTest, RefusesAUserWhoIsNotAtTheScreen) {
  user.become(getuid() + 1);
  start();
  CaptureStderr();
  auto client = connect();
  EXPECT_EQ(client->answer(), DriverAnswer::kNotTheActiveUser);
  EXPECT_EQ(client->receive(), 0);
  EXPECT_THAT(requests.log, IsEmpty());
  connect();
  const std::string text = GetCapturedStderr();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
}

TEST_F(LinkServerTest, RefusesEverybodyWhenNobodyIsAtTheScreen) {
  user.become(std::nullopt);
  start();
  EXPECT_EQ(connect()->answer(), DriverAnswer::kNotTheActiveUser);
}

TEST_F(LinkServerTest, LetsTheHelperGoWhenItsUserLeavesTheScreen) {
  start();
  auto client = admitted();
  user.become(getuid());
  EXPECT_TRUE(server.connected());
  user.become(getuid() + 1);
  EXPECT_EQ(client->answer(), DriverAnswer::kNotTheActiveUser);
  EXPECT_EQ(client->receive(), 0);
  EXPECT_THAT(requests.log, ElementsAre("arrived", "gone"));
  user.become(getuid());
  admitted();
}

TEST_F(LinkServerTest, ANewerHelperOfTheSameUserTakesThePlace) {
  start();
  auto older = admitted();
  auto newer = admitted();
  EXPECT_EQ(older->answer(), DriverAnswer::kReplaced);
  EXPECT_EQ(older->receive(), 0);
  older->close();
  loop.run();
  newer->send(makePacket<MonitorPacket>());
  loop.run();
  EXPECT_THAT(requests.log, ElementsAre("arrived", "gone", "arrived", "no monitor"));
}

TEST_F(LinkServerTest, StoppingTellsTheHelperAndLeavesNothingBehind) {
  start();
  auto client = admitted();
  server.stop(DriverAnswer::kStopping);
  EXPECT_EQ(client->answer(), DriverAnswer::kStopping);
  EXPECT_THAT(requests.log, ElementsAre("arrived", "gone"));
  EXPECT_EQ(loop.count(), 0U);
  EXPECT_FALSE(user.isWatched());
  EXPECT_FALSE(std::filesystem::exists(path));
  server.stop(DriverAnswer::kStopping);
}

TEST_F(LinkServerTest, DoesNotStartBesideAnotherDriver) {
  start();
  LinkServer second(loop, user, requests, {.socketPath = path, .driverVersion = {}});
  EXPECT_FALSE(second.start());
  second.stop(DriverAnswer::kStopping);
  admitted();
}

}  // namespace
}  // namespace veltrix
