#include "driver/request_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driverlink/packet_rules.h"
#include "tests/driver/recorded_requests.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

template <class Packet>
std::span<const std::byte> bytesOf(const Packet& packet) {
  return std::as_bytes(std::span(&packet, 1));
}

class RequestReaderTest : public ::testing::Test {
 protected:
  template <class Packet>
  bool take(const Packet& packet) {
    return reader.take(bytesOf(packet), now);
  }

  testing::RecordedRequests requests;
  RequestReader reader{requests};
  Microseconds now{1};
};

TypeKeysPacket keys(std::uint32_t id) {
  auto packet = makePacket<TypeKeysPacket>();
  packet.id = id;
  packet.count = 1;
  packet.interval = 1;
  packet.step[0] = {.code = 30, .down = 1};
  return packet;
}

TEST_F(RequestReaderTest, HandsOnEveryKindOfRequest) {
  auto apply = makePacket<ApplyPacket>();
  apply.device.product = 3;
  auto withdraw = makePacket<WithdrawPacket>();
  withdraw.device.product = 4;
  auto move = makePacket<MovePointerPacket>();
  move.dx = -5;
  move.dy = 6;
  auto monitor = makePacket<MonitorPacket>();
  EXPECT_TRUE(take(monitor));
  monitor.wanted = 1;
  EXPECT_TRUE(take(apply) && take(withdraw) && take(keys(9)) && take(move) && take(monitor));
  EXPECT_TRUE(take(makePacket<StopTypingPacket>()));
  EXPECT_THAT(requests.log, ElementsAre("no monitor", "apply 3", "withdraw 4", "type 9", "move -5 6",
                                        "monitor", "stop typing"));
}

TEST_F(RequestReaderTest, RefusesWhatOnlyTheDriverSays) {
  EXPECT_FALSE(take(makePacket<StatusPacket>()));
  EXPECT_FALSE(take(makePacket<DeviceStatePacket>()));
  EXPECT_FALSE(take(makePacket<ButtonPacket>()));
  EXPECT_FALSE(take(makePacket<KeysTypedPacket>()));
  EXPECT_FALSE(take(makePacket<LampsPacket>()));
  EXPECT_THAT(requests.log, IsEmpty());
}

TEST_F(RequestReaderTest, RefusesAnotherVersionAndUnknownKinds) {
  auto other = makePacket<MonitorPacket>();
  other.header.version = kDriverProtocolVersion + 1;
  EXPECT_FALSE(take(other));
  auto unknown = makePacket<MonitorPacket>();
  unknown.header.kind = 77;
  EXPECT_FALSE(take(unknown));
  EXPECT_THAT(requests.log, IsEmpty());
}

TEST_F(RequestReaderTest, RefusesEveryOtherSize) {
  const auto packet = makePacket<WithdrawPacket>();
  std::array<std::byte, kLargestPacket> bytes{};
  std::memcpy(bytes.data(), &packet, sizeof packet);
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    EXPECT_EQ(reader.take(std::span(bytes.data(), size), now), size == sizeof packet) << size;
  }
}

TEST_F(RequestReaderTest, RefusesAFieldThatIsOutOfRange) {
  auto move = makePacket<MovePointerPacket>();
  move.dx = kFarthestPointerMove + 1;
  EXPECT_FALSE(take(move));
  EXPECT_THAT(requests.log, IsEmpty());
}

TEST_F(RequestReaderTest, RefusesKeysThatNobodyTakes) {
  requests.takesKeys = false;
  EXPECT_FALSE(take(keys(1)));
}

TEST_F(RequestReaderTest, RefusesAFloodButNoDragOfASlider) {
  using std::chrono::milliseconds;
  // Six trackballs of different firmware, fifty times a second, for a minute.
  for (; now < std::chrono::minutes(1); now += milliseconds(20)) {
    for (int device = 0; device < 6; ++device) ASSERT_TRUE(take(makePacket<ApplyPacket>()));
  }
  std::uint32_t flood = 0;
  while (flood < 2 * kRequestBurst && take(makePacket<ApplyPacket>())) ++flood;
  EXPECT_EQ(flood, kRequestBurst);
}

TEST_F(RequestReaderTest, ForgetsTheFloodOfAnEarlierConnection) {
  while (take(makePacket<ApplyPacket>())) {
  }
  reader.reset();
  EXPECT_TRUE(take(makePacket<ApplyPacket>()));
}

}  // namespace
}  // namespace veltrix
