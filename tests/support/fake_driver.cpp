#include "tests/support/fake_driver.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>

namespace veltrix::testing {

namespace {

bool isReadable(int descriptor, std::chrono::milliseconds limit) {
  pollfd waiting{descriptor, POLLIN, 0};
  return ::poll(&waiting, 1, static_cast<int>(limit.count())) > 0;
}

}  // namespace

FakeDriver::FakeDriver(std::string path)
    : fPath(std::move(path)), fListener(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  fPath.copy(address.sun_path, sizeof address.sun_path - 1);
  // It gets its name when it listens already: whoever waits for the name may connect at once.
  const std::string early = fPath + "+";
  sockaddr_un first = address;
  early.copy(first.sun_path, sizeof first.sun_path - 1);
  EXPECT_EQ(::bind(fListener.get(), reinterpret_cast<const sockaddr*>(&first), sizeof first), 0) << early;
  EXPECT_EQ(::listen(fListener.get(), 4), 0);
  EXPECT_EQ(::rename(early.c_str(), fPath.c_str()), 0);
}

FakeDriver::~FakeDriver() {
  ::unlink(fPath.c_str());
}

bool FakeDriver::accept(std::chrono::milliseconds limit) {
  if (!isReadable(fListener.get(), limit))
    return false;
  fHelper.reset(::accept4(fListener.get(), nullptr, nullptr, SOCK_CLOEXEC));
  return static_cast<bool>(fHelper);
}

bool FakeDriver::welcome(std::chrono::milliseconds limit) {
  if (!accept(limit))
    return false;
  sendStatus(DriverAnswer::kAccepted);
  return true;
}

bool FakeDriver::refuse(DriverAnswer answer, std::chrono::milliseconds limit) {
  if (!accept(limit))
    return false;
  sendStatus(answer);
  hangUp();
  return true;
}

void FakeDriver::sendStatus(DriverAnswer answer, bool outputs) {
  auto packet = makePacket<StatusPacket>();
  packet.answer = static_cast<std::uint16_t>(answer);
  packet.outputs = outputs ? 1 : 0;
  std::strcpy(packet.driverVersion, "9.8.7");
  send(packet);
}

void FakeDriver::sendBytes(const void* bytes, std::size_t size) {
  ::send(fHelper.get(), bytes, size, MSG_NOSIGNAL);
}

bool FakeDriver::isSilent(std::chrono::milliseconds limit) {
  return !isReadable(fHelper.get(), limit);
}

bool FakeDriver::sawEnd(std::chrono::milliseconds limit) {
  while (receiveMessage(limit)) {
  }
  std::byte byte{};
  return ::recv(fHelper.get(), &byte, 1, MSG_DONTWAIT) == 0;
}

std::optional<std::vector<std::byte>> FakeDriver::receiveMessage(std::chrono::milliseconds limit) {
  if (!isReadable(fHelper.get(), limit))
    return std::nullopt;
  std::vector<std::byte> message(2 * kLargestPacket);
  const ssize_t size = ::recv(fHelper.get(), message.data(), message.size(), 0);
  if (size <= 0)
    return std::nullopt;
  message.resize(static_cast<std::size_t>(size));
  return message;
}

}  // namespace veltrix::testing
