#include "driver/link_server.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <memory>

#include "driverlink/packet_rules.h"
#include "tests/driver/fake_poll_loop.h"
#include "tests/driver/recorded_requests.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

class FakeActiveUser final : public ActiveUser {
 public:
  std::optional<uid_t> current() noexcept override { return fUser; }
  void setListener(ActiveUserListener* listener) noexcept override { fListener = listener; }
  void become(std::optional<uid_t> user) {
    fUser = user;
    if (fListener != nullptr)
      fListener->activeUserChanged();
  }
  bool isWatched() const { return fListener != nullptr; }

 private:
  std::optional<uid_t> fUser = getuid();
  ActiveUserListener* fListener = nullptr;
};

// The helper's end, as plain as it gets.
class Client {
 public:
  explicit Client(const std::string& path) : fSocket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    fConnected = ::connect(fSocket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }

  bool connected() const { return fConnected; }

  template <class Packet>
  void send(const Packet& packet, std::size_t size = sizeof(Packet)) const {
    ::send(fSocket.get(), &packet, size, MSG_NOSIGNAL | MSG_DONTWAIT);
  }

  // The next message's size: 0 at the end of the connection, -1 when there is none yet.
  ssize_t receive() { return ::recv(fSocket.get(), fBuffer.data(), fBuffer.size(), MSG_DONTWAIT); }

  std::optional<StatusPacket> status() {
    const ssize_t size = receive();
    return size > 0 ? readPacket<StatusPacket>({fBuffer.data(), static_cast<std::size_t>(size)})
                    : std::nullopt;
  }

  std::optional<DriverAnswer> answer() {
    const auto packet = status();
    return packet ? std::optional(static_cast<DriverAnswer>(packet->answer)) : std::nullopt;
  }

  void close() { fSocket.reset(); }
  int descriptor() const { return fSocket.get(); }

 private:
  FileDescriptor fSocket;
  bool fConnected = false;
  std::array<std::byte, 1024> fBuffer{};
};

class LinkServerTest : public ::testing::Test {
 protected:
  void start() { ASSERT_TRUE(server.start()); }
  std::unique_ptr<Client> connect() {
    auto client = std::make_unique<Client>(path);
    EXPECT_TRUE(client->connected());
    loop.run();
    return client;
  }
  // One that has its greeting behind it.
  std::unique_ptr<Client> admitted() {
    auto client = connect();
    EXPECT_EQ(client->answer(), DriverAnswer::kAccepted);
    return client;
  }

  testing::TemporaryFolder folder;
  std::string path = folder / "driver.sock";
  testing::FakePollLoop loop;
  FakeActiveUser user;
  testing::RecordedRequests requests;
  LinkServer server{loop, user, requests, {.socketPath = path, .driverVersion = "1.2.3"}};
};

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

TEST_F(LinkServerTest, RefusalArrivesThoughRequestsWereNotRead) {
  user.become(std::nullopt);
  start();
  Client client(path);
  for (int i = 0; i < 5; ++i) client.send(makePacket<ApplyPacket>());
  loop.run();
  EXPECT_EQ(client.answer(), DriverAnswer::kNotTheActiveUser);
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

TEST_F(LinkServerTest, OneMalformedPacketEndsTheConnection) {
  start();
  auto client = admitted();
  client->send(makePacket<WithdrawPacket>(), sizeof(WithdrawPacket) - 1);
  client->send(makePacket<WithdrawPacket>());
  loop.run();
  EXPECT_EQ(client->answer(), DriverAnswer::kBrokenRule);
  EXPECT_EQ(client->receive(), 0);
  EXPECT_THAT(requests.log, ElementsAre("arrived", "gone"));
}

TEST_F(LinkServerTest, APacketThatIsTooLongEndsTheConnection) {
  start();
  auto client = admitted();
  std::array<std::byte, kLargestPacket + 1> bytes{};
  const auto packet = makePacket<WithdrawPacket>();
  std::memcpy(bytes.data(), &packet, sizeof packet);
  client->send(bytes);
  loop.run();
  EXPECT_EQ(client->answer(), DriverAnswer::kBrokenRule);
}

TEST_F(LinkServerTest, AnEmptyPacketEndsTheConnection) {
  start();
  auto client = admitted();
  client->send(0, 0);
  loop.run();
  EXPECT_FALSE(server.connected());
}

TEST_F(LinkServerTest, AFloodEndsTheConnection) {
  start();
  auto client = admitted();
  for (unsigned i = 0; i <= kRequestBurst && server.connected(); ++i) {
    client->send(makePacket<MovePointerPacket>());
    loop.runOnce();
  }
  EXPECT_EQ(client->answer(), DriverAnswer::kBrokenRule);
  EXPECT_EQ(requests.log.size(), kRequestBurst + 2);
}

TEST_F(LinkServerTest, AHelperThatDoesNotReadLosesItsConnectionButNotInTheMiddleOfATelling) {
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

TEST_F(LinkServerTest, ReadsABoundedNumberOfPacketsAtOnce) {
  start();
  auto client = admitted();
  for (int i = 0; i < 100; ++i) client->send(makePacket<MonitorPacket>());
  loop.runOnce();
  EXPECT_LT(requests.log.size(), 50U);
  loop.run();
  EXPECT_EQ(requests.log.size(), 101U);
}

TEST_F(LinkServerTest, AcceptsABoundedNumberAtOnce) {
  user.become(std::nullopt);
  start();
  std::vector<std::unique_ptr<Client>> crowd;
  for (int i = 0; i < 12; ++i) crowd.push_back(std::make_unique<Client>(path));
  loop.runOnce();
  EXPECT_EQ(crowd[11]->receive(), -1);
  loop.run();
  EXPECT_EQ(crowd[11]->answer(), DriverAnswer::kNotTheActiveUser);
}

TEST_F(LinkServerTest, WaitsWhenDescriptorsHaveRunOut) {
  start();
  Client client(path);
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

TEST_F(LinkServerTest, RefusesAHelperThatTheLoopHasNoRoomFor) {
  start();
  loop.refusesMore = true;
  EXPECT_EQ(connect()->receive(), 0);
  EXPECT_THAT(requests.log, IsEmpty());
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
