#pragma once

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "driver/link_server.h"
#include "driverlink/packet_rules.h"
#include "tests/driver/fake_poll_loop.h"
#include "tests/driver/recorded_requests.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::testing {

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

  TemporaryFolder folder;
  std::string path = folder / "driver.sock";
  FakePollLoop loop;
  FakeActiveUser user;
  RecordedRequests requests;
  LinkServer server{loop, user, requests, {.socketPath = path, .driverVersion = "1.2.3"}};
};

}  // namespace veltrix::testing
