#include "driverlink/packet_rules.h"

#include <algorithm>
#include <iterator>

namespace veltrix {

namespace {

constexpr std::uint16_t kLastKeyboardKey = 247;  // KEY_RFKILL; buttons of pointers come after it

bool isSwitch(std::uint32_t value) {
  return value <= 1;
}

bool isValid(const DeviceAddress& device) {
  return device.reserved == 0;
}

bool isValid(const DriverRecord& record) {
  constexpr std::uint8_t kAllAxisFlags = kInvertX | kInvertY | kInvertZ | kSwapXY;
  const auto isZero = [](std::uint8_t byte) { return byte == 0; };
  const auto hasNothingReserved = [](const RecordAction& action) { return action.reserved == 0; };
  return (record.axisFlags & ~kAllAxisFlags) == 0 && isSwitch(record.invertWheel) &&
         isSwitch(record.inertialScroll) && record.actionCount <= kRecordActions &&
         std::all_of(std::begin(record.reserved), std::end(record.reserved), isZero) &&
         std::all_of(std::begin(record.action), std::end(record.action), hasNothingReserved);
}

bool isValidStep(const KeyStep& step) {
  return step.code >= 1 && step.code <= kLastKeyboardKey && isSwitch(step.down);
}

bool isEmptyStep(const KeyStep& step) {
  return step.code == 0 && step.down == 0;
}

bool isMove(std::int32_t distance) {
  return distance >= -kFarthestPointerMove && distance <= kFarthestPointerMove;
}

}  // namespace

bool isValid(const ApplyPacket& packet) noexcept {
  return isValid(packet.device) && isValid(packet.record);
}

bool isValid(const WithdrawPacket& packet) noexcept {
  return isValid(packet.device);
}

bool isValid(const TypeKeysPacket& packet) noexcept {
  if (packet.count < 1 || packet.count > kMostKeySteps || packet.interval < kShortestKeyInterval ||
      packet.interval > kLongestKeyInterval || !isSwitch(packet.stoppable)) {
    return false;
  }
  const KeyStep* end = packet.step + packet.count;
  return std::all_of(packet.step, end, isValidStep) && std::all_of(end, std::end(packet.step), isEmptyStep);
}

bool isValid(const StopTypingPacket& /*packet*/) noexcept {
  return true;
}

bool isValid(const MovePointerPacket& packet) noexcept {
  return isMove(packet.dx) && isMove(packet.dy);
}

bool isValid(const MonitorPacket& packet) noexcept {
  return isSwitch(packet.wanted);
}

bool isValid(const StatusPacket& packet) noexcept {
  return packet.answer <= static_cast<std::uint16_t>(DriverAnswer::kReplaced) && isSwitch(packet.outputs) &&
         packet.driverVersion[sizeof packet.driverVersion - 1] == '\0';
}

bool isValid(const DeviceStatePacket& packet) noexcept {
  return isValid(packet.device) && packet.condition <= static_cast<std::uint16_t>(DeviceCondition::kFailed);
}

bool isValid(const ButtonPacket& packet) noexcept {
  return isValid(packet.device) && packet.slot < kRecordActions && isSwitch(packet.pressed) &&
         isSwitch(packet.forHelper);
}

bool isValid(const KeysTypedPacket& packet) noexcept {
  return packet.count <= kMostKeySteps &&
         packet.outcome <= static_cast<std::uint16_t>(TypingOutcome::kNoKeyboard);
}

bool isValid(const LampsPacket& packet) noexcept {
  return (packet.lit & ~(kCapsLockLamp | kNumLockLamp)) == 0 && packet.reserved == 0;
}

std::optional<PacketKind> packetKind(std::span<const std::byte> message) noexcept {
  PacketHeader header{};
  if (message.size() < sizeof header)
    return std::nullopt;
  std::memcpy(&header, message.data(), sizeof header);
  if (header.version != kDriverProtocolVersion)
    return std::nullopt;
  return static_cast<PacketKind>(header.kind);
}

}  // namespace veltrix
