#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "driverlink/packet_rules.h"
#include "util/file_descriptor.h"

namespace veltrix::testing {

// The driver's end of the connection without a driver: listens, says what a test wants, keeps what it hears.
class FakeDriver {
 public:
  // Listens at once. The socket goes with the object.
  explicit FakeDriver(std::string path);
  ~FakeDriver();
  FakeDriver(const FakeDriver&) = delete;
  FakeDriver& operator=(const FakeDriver&) = delete;

  // Waits for a helper and takes the place of a former connection; false when none comes in that time.
  bool accept(std::chrono::milliseconds limit = std::chrono::seconds(10));
  // The same, and greets it.
  bool welcome(std::chrono::milliseconds limit = std::chrono::seconds(10));
  // Accepts and refuses.
  bool refuse(DriverAnswer answer, std::chrono::milliseconds limit = std::chrono::seconds(10));

  void sendStatus(DriverAnswer answer, bool outputs = true);
  template <class Packet>
  void send(const Packet& packet) {
    sendBytes(&packet, sizeof packet);
  }
  void sendBytes(const void* bytes, std::size_t size);

  // The next packet as that kind; nothing when it is another one, none comes, or the connection ends.
  template <class Packet>
  std::optional<Packet> receive(std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    const auto message = receiveMessage(limit);
    return message ? readPacket<Packet>(*message) : std::nullopt;
  }
  // Whether nothing comes for that long.
  bool isSilent(std::chrono::milliseconds limit = std::chrono::milliseconds(100));
  // Whether the helper ends the connection; what it says before is dropped.
  bool sawEnd(std::chrono::milliseconds limit = std::chrono::seconds(10));

  void hangUp() { fHelper.reset(); }

 private:
  std::optional<std::vector<std::byte>> receiveMessage(std::chrono::milliseconds limit);

  std::string fPath;
  FileDescriptor fListener;
  FileDescriptor fHelper;
};

}  // namespace veltrix::testing
