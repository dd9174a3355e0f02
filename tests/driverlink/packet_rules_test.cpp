#include "driverlink/packet_rules.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <functional>
#include <vector>

namespace veltrix {
namespace {

template <class Packet>
std::vector<std::byte> bytesOf(const Packet& packet) {
  const auto bytes = std::as_bytes(std::span(&packet, 1));
  return {bytes.begin(), bytes.end()};
}

template <class Packet>
bool accepted(const Packet& packet) {
  return readPacket<Packet>(bytesOf(packet)).has_value();
}

// Whether the packet, which is accepted as it is, still is after the change.
template <class Packet>
bool acceptedWith(Packet packet, const std::function<void(Packet&)>& change) {
  EXPECT_TRUE(accepted(packet));
  change(packet);
  return accepted(packet);
}

TypeKeysPacket twoSteps() {
  auto packet = makePacket<TypeKeysPacket>();
  packet.count = 2;
  packet.interval = 5;
  packet.step[0] = {.code = 30, .down = 1};
  packet.step[1] = {.code = 30, .down = 0};
  return packet;
}

TEST(PacketRules, takesEveryKindAsItIsMade) {
  EXPECT_TRUE(accepted(makePacket<ApplyPacket>()));
  EXPECT_TRUE(accepted(makePacket<WithdrawPacket>()));
  EXPECT_TRUE(accepted(twoSteps()));
  EXPECT_TRUE(accepted(makePacket<MovePointerPacket>()));
  EXPECT_TRUE(accepted(makePacket<MonitorPacket>()));
  EXPECT_TRUE(accepted(makePacket<StatusPacket>()));
  EXPECT_TRUE(accepted(makePacket<DeviceStatePacket>()));
  EXPECT_TRUE(accepted(makePacket<ButtonPacket>()));
  EXPECT_TRUE(accepted(makePacket<KeysTypedPacket>()));
  EXPECT_TRUE(accepted(makePacket<LampsPacket>()));
}

TEST(PacketRules, refusesAnotherVersionKindOrSize) {
  auto packet = makePacket<WithdrawPacket>();
  auto bytes = bytesOf(packet);
  EXPECT_FALSE(readPacket<MonitorPacket>(bytes));
  bytes.push_back(std::byte{0});
  EXPECT_FALSE(readPacket<WithdrawPacket>(bytes));
  bytes.resize(sizeof packet - 1);
  EXPECT_FALSE(readPacket<WithdrawPacket>(bytes));
  bytes.resize(sizeof(PacketHeader) - 1);
  EXPECT_EQ(packetKind(bytes), std::nullopt);
  packet.header.version = kDriverProtocolVersion + 1;
  EXPECT_EQ(packetKind(bytesOf(packet)), std::nullopt);
}

TEST(PacketRules, refusesWhatIsReservedOrNoSwitch) {
  const auto apply = makePacket<ApplyPacket>();
  using Change = std::function<void(ApplyPacket&)>;
  for (const Change& change : std::vector<Change>{
           [](ApplyPacket& p) { p.device.reserved = 1; },
           [](ApplyPacket& p) { p.record.reserved[6] = 1; },
           [](ApplyPacket& p) { p.record.action[15].reserved = 1; },
           [](ApplyPacket& p) { p.record.axisFlags = 16; },
           [](ApplyPacket& p) { p.record.invertWheel = 2; },
           [](ApplyPacket& p) { p.record.inertialScroll = 2; },
           [](ApplyPacket& p) { p.record.actionCount = 17; },
       }) {
    EXPECT_FALSE(acceptedWith(apply, change));
  }
  EXPECT_FALSE(
      acceptedWith<WithdrawPacket>(makePacket<WithdrawPacket>(), [](auto& p) { p.device.reserved = 1; }));
  EXPECT_FALSE(acceptedWith<MonitorPacket>(makePacket<MonitorPacket>(), [](auto& p) { p.wanted = 2; }));
}

TEST(PacketRules, takesKeysOfKeyboardsOnly) {
  using Change = std::function<void(TypeKeysPacket&)>;
  for (const Change& change : std::vector<Change>{
           [](TypeKeysPacket& p) { p.count = 0; },
           [](TypeKeysPacket& p) { p.count = kMostKeySteps + 1; },
           [](TypeKeysPacket& p) { p.stoppable = 2; },
           [](TypeKeysPacket& p) { p.interval = 0; },
           [](TypeKeysPacket& p) { p.interval = kLongestKeyInterval + 1; },
           [](TypeKeysPacket& p) { p.step[0].code = 0; },
           [](TypeKeysPacket& p) { p.step[0].code = 0x110; },
           [](TypeKeysPacket& p) { p.step[0].down = 2; },
           [](TypeKeysPacket& p) { p.step[2].code = 30; },
       }) {
    EXPECT_FALSE(acceptedWith(twoSteps(), change));
  }
  EXPECT_TRUE(acceptedWith<TypeKeysPacket>(twoSteps(), [](auto& p) { p.step[0].code = 247; }));
  EXPECT_TRUE(acceptedWith<TypeKeysPacket>(twoSteps(), [](auto& p) { p.stoppable = 1; }));
}

TEST(PacketRules, limitsHowFarThePointerIsMoved) {
  const auto move = makePacket<MovePointerPacket>();
  EXPECT_TRUE(acceptedWith<MovePointerPacket>(move, [](auto& p) { p.dx = -kFarthestPointerMove; }));
  EXPECT_FALSE(acceptedWith<MovePointerPacket>(move, [](auto& p) { p.dx = -kFarthestPointerMove - 1; }));
  EXPECT_FALSE(acceptedWith<MovePointerPacket>(move, [](auto& p) { p.dy = kFarthestPointerMove + 1; }));
}

TEST(PacketRules, refusesAnswersThatNoDriverGives) {
  EXPECT_FALSE(acceptedWith<StatusPacket>(makePacket<StatusPacket>(), [](auto& p) { p.answer = 5; }));
  EXPECT_FALSE(acceptedWith<StatusPacket>(makePacket<StatusPacket>(), [](auto& p) { p.outputs = 2; }));
  EXPECT_FALSE(
      acceptedWith<StatusPacket>(makePacket<StatusPacket>(), [](auto& p) { p.driverVersion[23] = 'x'; }));
  EXPECT_FALSE(
      acceptedWith<DeviceStatePacket>(makePacket<DeviceStatePacket>(), [](auto& p) { p.condition = 6; }));
  EXPECT_FALSE(acceptedWith<ButtonPacket>(makePacket<ButtonPacket>(), [](auto& p) { p.slot = 16; }));
  EXPECT_FALSE(acceptedWith<ButtonPacket>(makePacket<ButtonPacket>(), [](auto& p) { p.pressed = 2; }));
  EXPECT_FALSE(acceptedWith<KeysTypedPacket>(makePacket<KeysTypedPacket>(), [](auto& p) { p.outcome = 3; }));
  EXPECT_TRUE(acceptedWith<LampsPacket>(makePacket<LampsPacket>(), [](auto& p) { p.lit = 3; }));
  EXPECT_FALSE(acceptedWith<LampsPacket>(makePacket<LampsPacket>(), [](auto& p) { p.lit = 4; }));
  EXPECT_FALSE(acceptedWith<LampsPacket>(makePacket<LampsPacket>(), [](auto& p) { p.reserved = 1; }));
}

RC_GTEST_PROP(PacketRulesProperty, whatIsAcceptedIsTheMessageItself, (std::vector<std::uint8_t> noise)) {
  auto bytes = bytesOf(twoSteps());
  for (std::size_t i = 0; i + 1 < noise.size(); i += 2)
    bytes[noise[i] % bytes.size()] = std::byte{noise[i + 1]};
  if (const auto packet = readPacket<TypeKeysPacket>(bytes))
    RC_ASSERT(bytesOf(*packet) == bytes);
}

}  // namespace
}  // namespace veltrix
