#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "driver/request_reader.h"
#include "driverlink/packet_rules.h"

// What a helper that has gone wrong could send to the driver: the first byte of each message says how long it
// is, the second how many milliseconds have passed, and how the header is made up. The same bytes are then
// what a driver that has gone wrong could send to the helper.
namespace {

using namespace veltrix;

void require(bool condition) {
  if (!condition)
    std::abort();
}

// Looks at what comes through with rules of its own.
class Strict final : public HelperRequests {
 public:
  bool hasOutputs() const noexcept override { return true; }
  void helperArrived() noexcept override {}
  void helperGone() noexcept override {}
  void apply(const ApplyPacket& packet) noexcept override {
    require(packet.device.reserved == 0 && packet.record.actionCount <= kRecordActions);
    require(packet.record.axisFlags < 16 && packet.record.invertWheel < 2);
    ++count;
  }
  void withdraw(const WithdrawPacket& packet) noexcept override {
    require(packet.device.reserved == 0);
    ++count;
  }
  bool typeKeys(const TypeKeysPacket& packet) noexcept override {
    require(packet.count >= 1 && packet.count <= kMostKeySteps && packet.interval >= 1);
    require(packet.stoppable < 2);
    for (int i = 0; i < packet.count; ++i) {
      require(packet.step[i].code >= 1 && packet.step[i].code <= 247 && packet.step[i].down < 2);
    }
    ++count;
    return packet.id % 2 == 0;
  }
  void stopTyping() noexcept override { ++count; }
  void movePointer(const MovePointerPacket& packet) noexcept override {
    require(std::abs(std::int64_t{packet.dx}) <= 32767 && std::abs(std::int64_t{packet.dy}) <= 32767);
    ++count;
  }
  void monitor(bool /*wanted*/) noexcept override { ++count; }

  std::uint64_t count = 0;
};

// Most messages get a header that leads on to the rules of one kind.
void mendHeader(std::vector<std::byte>& message, unsigned choice) {
  PacketHeader header{.version = kDriverProtocolVersion, .kind = static_cast<std::uint16_t>(choice % 8)};
  if (choice % 16 < 8 && message.size() >= sizeof header)
    std::memcpy(message.data(), &header, sizeof header);
}

// The same bytes as a message of that kind, if there are enough.
template <class Packet>
std::optional<Packet> readAs(std::span<const std::byte> message) {
  std::vector<std::byte> bytes(message.begin(), message.end());
  const auto header = makePacket<Packet>().header;
  if (bytes.size() < sizeof(Packet))
    return std::nullopt;
  bytes.resize(sizeof(Packet));
  std::memcpy(bytes.data(), &header, sizeof header);
  return readPacket<Packet>(bytes);
}

void checkAnswers(std::span<const std::byte> message) {
  if (const auto status = readAs<StatusPacket>(message))
    require(status->answer < 5 && status->outputs < 2 && std::strlen(status->driverVersion) < 24);
  if (const auto state = readAs<DeviceStatePacket>(message))
    require(state->device.reserved == 0 && state->condition < 6);
  if (const auto button = readAs<ButtonPacket>(message))
    require(button->slot < 16 && button->pressed < 2 && button->forHelper < 2);
  if (const auto typed = readAs<KeysTypedPacket>(message))
    require(typed->count <= kMostKeySteps && typed->outcome < 3);
  if (const auto lamps = readAs<LampsPacket>(message))
    require(lamps->lit < 4 && lamps->reserved == 0);
}

std::size_t sizeOf(unsigned choice, std::size_t other) {
  constexpr std::size_t kSizes[] = {sizeof(ApplyPacket),       sizeof(WithdrawPacket), sizeof(TypeKeysPacket),
                                    sizeof(MovePointerPacket), sizeof(MonitorPacket),  0,
                                    sizeof(StopTypingPacket),  sizeof(LampsPacket)};
  const std::size_t size = kSizes[choice % std::size(kSizes)];
  return size != 0 ? size : other;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Strict requests;
  RequestReader reader(requests);
  std::span<const std::uint8_t> input(data, size);
  Microseconds now{};
  std::uint64_t taken = 0;
  while (input.size() >= 3) {
    const unsigned length = input[0];
    const unsigned choice = input[2];
    now += std::chrono::milliseconds(input[1]);
    input = input.subspan(3);
    const std::size_t wanted = sizeOf(length, length);
    const auto bytes = std::as_bytes(input.first(std::min(wanted, input.size())));
    std::vector<std::byte> message(bytes.begin(), bytes.end());
    input = input.subspan(bytes.size());
    // The end of an input stands for zeros, which most packets are valid with.
    if (choice >= 128)
      message.resize(wanted);
    mendHeader(message, choice);
    checkAnswers(message);
    const std::uint64_t before = requests.count;
    const bool went = reader.take(message, now);
    require(requests.count - before <= 1 && (!went || requests.count == before + 1));
    taken += went ? 1 : 0;
  }
  require(taken <= kRequestBurst + static_cast<std::uint64_t>(now.count()) * kRequestsPerSecond / 1'000'000);
  return 0;
}
