#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "driverlink/record.h"
#include "driverlink/scroll_parameters.h"

// What the helper and the driver say to each other. Each packet is one message of a SOCK_SEQPACKET
// connection, has the fixed size of its kind and starts with PacketHeader; integers are in the byte order of
// the machine, as both ends are on it. Reserved fields are 0. A packet that breaks a rule ends the
// connection.
namespace veltrix {

inline constexpr std::uint16_t kDriverProtocolVersion = 2;
inline constexpr const char* kDriverSocketPath = "/run/veltrix/driver.sock";

enum class PacketKind : std::uint16_t {
  // from the helper
  kApply = 1,
  kWithdraw = 2,
  kTypeKeys = 3,
  kMovePointer = 4,
  kMonitor = 5,
  kStopTyping = 6,
  // from the driver
  kStatus = 0x81,
  kDeviceState = 0x82,
  kButton = 0x83,
  kKeysTyped = 0x84,
  kLamps = 0x85,
};

struct PacketHeader {
  std::uint16_t version;  // kDriverProtocolVersion
  std::uint16_t kind;     // a PacketKind
};

// The trackballs of one model and firmware; several that are alike share what is said of them.
struct DeviceAddress {
  std::uint16_t vendor;
  std::uint16_t product;
  std::uint16_t productVersion;  // USB bcdDevice with each byte as plain binary
  std::uint16_t reserved;

  friend bool operator==(const DeviceAddress& a, const DeviceAddress& b) = default;
};

// From now on these trackballs, present or to come, work by this record.
struct ApplyPacket {
  static constexpr PacketKind kKind = PacketKind::kApply;
  PacketHeader header;
  DeviceAddress device;
  DriverRecord record;
  ScrollParameters scroll;
};

// From now on these trackballs are ordinary mice.
struct WithdrawPacket {
  static constexpr PacketKind kKind = PacketKind::kWithdraw;
  PacketHeader header;
  DeviceAddress device;
};

inline constexpr std::size_t kMostKeySteps = 64;
inline constexpr std::uint16_t kShortestKeyInterval = 1;    // ms
inline constexpr std::uint16_t kLongestKeyInterval = 1000;  // ms

struct KeyStep {
  std::uint16_t code;  // evdev, a key of a keyboard: 1 to 247
  std::uint16_t down;  // 1 press, 0 release
};

// Presses and releases keys one after the other. What a packet leaves pressed is released at the end of the
// connection at the latest. Answered by KeysTypedPacket. A packet that comes while another is being typed
// waits; one more is a broken rule. Text that nobody waits for with the hand on the button is stoppable: any
// key of a real keyboard that goes down meanwhile stops it, and so does StopTypingPacket; what is stopped
// leaves nothing pressed.
struct TypeKeysPacket {
  static constexpr PacketKind kKind = PacketKind::kTypeKeys;
  PacketHeader header;
  std::uint32_t id;        // comes back in the answer
  std::uint8_t count;      // of steps in use, 1 to kMostKeySteps; the others are zero
  std::uint8_t stoppable;  // 1 or 0
  std::uint16_t interval;  // ms between two steps, kShortestKeyInterval to kLongestKeyInterval
  KeyStep step[kMostKeySteps];
};

// Stops the stoppable packets that are being typed or wait; each is answered as stopped.
struct StopTypingPacket {
  static constexpr PacketKind kKind = PacketKind::kStopTyping;
  PacketHeader header;
};

inline constexpr std::int32_t kFarthestPointerMove = 32767;

struct MovePointerPacket {
  static constexpr PacketKind kKind = PacketKind::kMovePointer;
  PacketHeader header;
  std::int32_t dx;  // -kFarthestPointerMove to kFarthestPointerMove, to the right
  std::int32_t dy;  // down
};

// Whether every button is to be reported, not only those whose command the helper carries out.
struct MonitorPacket {
  static constexpr PacketKind kKind = PacketKind::kMonitor;
  PacketHeader header;
  std::uint32_t wanted;  // 1 or 0, which holds at the start of a connection
};

enum class DriverAnswer : std::uint16_t {
  kAccepted = 0,
  kNotTheActiveUser = 1,  // somebody else, or nobody, is at the screen
  kBrokenRule = 2,        // a packet was malformed, of another version, or one too many
  kStopping = 3,          // the driver is being stopped
  kReplaced = 4,          // a newer helper of the same user has taken the place
};

// The first packet of a connection, and the last one before the driver closes it.
struct StatusPacket {
  static constexpr PacketKind kKind = PacketKind::kStatus;
  PacketHeader header;
  std::uint16_t answer;    // a DriverAnswer
  std::uint16_t outputs;   // 1 when the driver has its virtual pointer and keyboard, else 0
  char driverVersion[24];  // text, ended and filled up by NULs
};

enum class DeviceCondition : std::uint16_t {
  kDetached = 0,
  kLeftAlone = 1,  // an ordinary mouse: there is no record, or the record says so
  kWaiting = 2,    // for its buttons to be up, before it is taken over
  kTaken = 3,      // works by its record
  kBusy = 4,       // another program has taken it exclusively; tried again
  kFailed = 5,     // cannot be opened or written for; `error` says why
};

// Sent for every trackball at the start of a connection and for each change.
struct DeviceStatePacket {
  static constexpr PacketKind kKind = PacketKind::kDeviceState;
  PacketHeader header;
  DeviceAddress device;
  std::uint32_t number;     // of this one trackball, not used again for another
  std::uint16_t condition;  // a DeviceCondition
  std::uint16_t error;      // errno of kBusy and kFailed, else 0
};

// A button, a chord or the wheel began or ended what its slot of the record says.
struct ButtonPacket {
  static constexpr PacketKind kKind = PacketKind::kButton;
  PacketHeader header;
  DeviceAddress device;
  std::uint32_t number;  // as in DeviceStatePacket
  std::uint16_t slot;    // 0 to 15
  std::uint16_t command;
  std::uint16_t pressed;    // 1 or 0
  std::uint16_t forHelper;  // 1 when the helper is to carry it out, 0 when the driver does
};

enum class TypingOutcome : std::uint16_t { kTyped = 0, kStopped = 1, kNoKeyboard = 2 };

struct KeysTypedPacket {
  static constexpr PacketKind kKind = PacketKind::kKeysTyped;
  PacketHeader header;
  std::uint32_t id;
  std::uint16_t count;    // of steps that were carried out
  std::uint16_t outcome;  // a TypingOutcome
};

inline constexpr std::uint16_t kCapsLockLamp = 0x01;
inline constexpr std::uint16_t kNumLockLamp = 0x02;

// The lamps of the virtual keyboard, which show by which locks its keys are read. Sent for each change; at
// the start of a connection all are out until this has been sent.
struct LampsPacket {
  static constexpr PacketKind kKind = PacketKind::kLamps;
  PacketHeader header;
  std::uint16_t lit;  // k...Lamp bits
  std::uint16_t reserved;
};

static_assert(sizeof(ApplyPacket) == 208);
static_assert(sizeof(WithdrawPacket) == 12);
static_assert(sizeof(TypeKeysPacket) == 268);
static_assert(sizeof(StopTypingPacket) == 4);
static_assert(sizeof(MovePointerPacket) == 12);
static_assert(sizeof(MonitorPacket) == 8);
static_assert(sizeof(StatusPacket) == 32);
static_assert(sizeof(DeviceStatePacket) == 20);
static_assert(sizeof(ButtonPacket) == 24);
static_assert(sizeof(KeysTypedPacket) == 12);
static_assert(sizeof(LampsPacket) == 8);

inline constexpr std::size_t kLargestPacket = sizeof(TypeKeysPacket);

}  // namespace veltrix
