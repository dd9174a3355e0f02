#include <gmock/gmock.h>
#include <sys/resource.h>

#include <cstring>
#include <memory>
#include <span>
#include <vector>

#include "tests/driver/link_server_fixture.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

// What it does not put up with, and how much it does at once.
using LinkServerLimitsTest = testing::LinkServerTest;

TEST_F(LinkServerLimitsTest, RefusalArrivesThoughRequestsWereNotRead) {
  user.become(std::nullopt);
  start();
  testing::Client client(path);
  for (int i = 0; i < 5; ++i) client.send(makePacket<ApplyPacket>());
  loop.run();
  EXPECT_EQ(client.answer(), DriverAnswer::kNotTheActiveUser);
}

TEST_F(LinkServerLimitsTest, OneMalformedPacketEndsTheConnection) {
  start();
  auto client = admitted();
  client->send(makePacket<WithdrawPacket>(), sizeof(WithdrawPacket) - 1);
  client->send(makePacket<WithdrawPacket>());
  loop.run();
  EXPECT_EQ(client->answer(), DriverAnswer::kBrokenRule);
  EXPECT_EQ(client->receive(), 0);
  EXPECT_THAT(requests.log, ElementsAre("arrived", "gone"));
}

TEST_F(LinkServerLimitsTest, APacketThatIsTooLongEndsTheConnection) {
  start();
  auto client = admitted();
  std::array<std::byte, kLargestPacket + 1> bytes{};
  const auto packet = makePacket<WithdrawPacket>();
  std::memcpy(bytes.data(), &packet, sizeof packet);
  client->send(bytes);
  loop.run();
  EXPECT_EQ(client->answer(), DriverAnswer::kBrokenRule);
}

TEST_F(LinkServerLimitsTest, AnEmptyPacketEndsTheConnection) {
  start();
  auto client = admitted();
  client->send(0, 0);
  loop.run();
  EXPECT_FALSE(server.connected());
}

TEST_F(LinkServerLimitsTest, AFloodEndsTheConnection) {
  start();
  auto client = admitted();
  for (unsigned i = 0; i <= kRequestBurst && server.connected(); ++i) {
    client->send(makePacket<MovePointerPacket>());
    loop.runOnce();
  }
  EXPECT_EQ(client->answer(), DriverAnswer::kBrokenRule);
  EXPECT_EQ(requests.log.size(), kRequestBurst + 2);
}

TEST_F(LinkServerLimitsTest, AHelperThatDoesNotReadLosesItsConnectionButNotInTheMiddleOfATelling) {
  start();
  CaptureStderr();
  auto client = admitted();
  const auto packet = makePacket<ButtonPacket>();
  for (int i = 0; i < 5000; ++i) server.send(std::as_bytes(std::span(&packet, 1)));
  EXPECT_TRUE(server.connected());
  EXPECT_THAT(requests.log, ElementsAre("arrived"));
  loop.run();
  EXPECT_FALSE(server.connected());
  EXPECT_THAT(requests.log, ElementsAre("arrived", "gone"));
  EXPECT_THAT(GetCapturedStderr(), ::testing::HasSubstr("does not read"));
}

TEST_F(LinkServerLimitsTest, ReadsABoundedNumberOfPacketsAtOnce) {
  start();
  auto client = admitted();
  for (int i = 0; i < 100; ++i) client->send(makePacket<MonitorPacket>());
  loop.runOnce();
  EXPECT_LT(requests.log.size(), 50U);
  loop.run();
  EXPECT_EQ(requests.log.size(), 101U);
}

TEST_F(LinkServerLimitsTest, AcceptsABoundedNumberAtOnce) {
  user.become(std::nullopt);
  start();
  std::vector<std::unique_ptr<testing::Client>> crowd;
  for (int i = 0; i < 12; ++i) crowd.push_back(std::make_unique<testing::Client>(path));
  loop.runOnce();
  EXPECT_EQ(crowd[11]->receive(), -1);
  loop.run();
  EXPECT_EQ(crowd[11]->answer(), DriverAnswer::kNotTheActiveUser);
}

TEST_F(LinkServerLimitsTest, WaitsWhenDescriptorsHaveRunOut) {
  start();
  testing::Client client(path);
  rlimit old{};
  getrlimit(RLIMIT_NOFILE, &old);
  const int next = FileDescriptor(dup(0)).get();
  const rlimit none{.rlim_cur = static_cast<rlim_t>(next), .rlim_max = old.rlim_max};
  CaptureStderr();
  setrlimit(RLIMIT_NOFILE, &none);
  int rounds = 0;
  while (rounds < 100 && loop.runOnce() > 0) ++rounds;
  setrlimit(RLIMIT_NOFILE, &old);
  EXPECT_LT(rounds, 5);
  EXPECT_THAT(GetCapturedStderr(), ::testing::HasSubstr("cannot let anybody in"));
  // The timer's own second, on which nothing else waits.
  EXPECT_EQ(loop.runOnce(10000), 1);
  loop.run();
  EXPECT_EQ(client.answer(), DriverAnswer::kAccepted);
}

TEST_F(LinkServerLimitsTest, RefusesAHelperThatTheLoopHasNoRoomFor) {
  start();
  loop.refusesMore = true;
  EXPECT_EQ(connect()->receive(), 0);
  EXPECT_THAT(requests.log, IsEmpty());
}

}  // namespace
}  // namespace veltrix
