#include "helper/driver_link.h"

#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <array>
#include <cerrno>
#include <filesystem>

#include "driverlink/packet_rules.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

// The rest can wait until the bus has had its turn.
constexpr int kMostReadAtOnce = 64;

constexpr std::uint64_t kTimerAccuracy = 1000;  // microseconds

int socketReadable(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* link) {
  static_cast<DriverLink*>(link)->readSome();
  return 0;
}

int deadlinePassed(sd_event_source* /*source*/, std::uint64_t /*time*/, void* link) {
  static_cast<DriverLink*>(link)->timePassed();
  return 0;
}

int folderChanged(sd_event_source* /*source*/, const inotify_event* event, void* link) {
  static_cast<DriverLink*>(link)->socketFolderChanged(*event);
  return 0;
}

std::uint64_t loopTime(std::chrono::steady_clock::time_point time) {
  const auto sinceStart = std::chrono::duration_cast<std::chrono::microseconds>(time.time_since_epoch());
  return static_cast<std::uint64_t>(sinceStart.count());
}

template <class Packet>
std::span<const std::byte> bytesOf(const Packet& packet) {
  return std::as_bytes(std::span(&packet, 1));
}

}  // namespace

DriverLink::DriverLink(sd_event* loop, std::string socketPath, DriverListener& listener)
    : fLoop(loop),
      fSocketPath(std::move(socketPath)),
      fListener(listener),
      fSeatWatch([this] { tryAgain(); }) {
  fReport.end(DriverState::kConnecting);
  fAnnounced = fReport;
}

DriverLink::~DriverLink() = default;

Status DriverLink::start() {
  sd_event_source* timer = nullptr;
  const int result =
      sd_event_add_time(fLoop, &timer, CLOCK_MONOTONIC, 0, kTimerAccuracy, deadlinePassed, this);
  fTimer.reset(timer);
  if (result < 0)
    return systemError(-result, "prepare", "the event loop");
  fSeatWatch.start(fLoop);  // without it the next attempt is merely later
  connect();
  return Done{};
}

void DriverLink::setDevices(const std::vector<ConnectedDevice>& devices) {
  fOrders.want(driverOrders(devices));
  tellOrders();
  setTimer();
}

void DriverLink::setMonitored(bool monitored) {
  if (fMonitored == monitored)
    return;
  fMonitored = monitored;
  if (fReport.isConnected()) {
    auto packet = makePacket<MonitorPacket>();
    packet.wanted = monitored ? 1 : 0;
    send(bytesOf(packet));
  }
}

bool DriverLink::typeKeys(const TypeKeysPacket& packet) {
  return fReport.isConnected() && sendOrHangUp(bytesOf(packet));
}

bool DriverLink::stopTyping() {
  return fReport.isConnected() && sendOrHangUp(bytesOf(makePacket<StopTypingPacket>()));
}

// A release that does not get through would leave a key down; at the end of the connection none is.
bool DriverLink::sendOrHangUp(std::span<const std::byte> packet) {
  const bool sent = send(packet);
  if (!sent)
    hangUp();
  return sent;
}

void DriverLink::hangUp() {
  if (fSocket)
    ::shutdown(fSocket.get(), SHUT_RDWR);
}

Status DriverLink::connectOnce() {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (fSocketPath.size() >= sizeof address.sun_path)
    return systemError(ENAMETOOLONG, "connect to", fSocketPath);
  fSocketPath.copy(address.sun_path, fSocketPath.size());
  FileDescriptor socket(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!socket || ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    return systemError(errno, "connect to", fSocketPath);
  }
  sd_event_source* reading = nullptr;
  const int result = sd_event_add_io(fLoop, &reading, socket.get(), EPOLLIN, socketReadable, this);
  if (result < 0)
    return systemError(-result, "wait for", fSocketPath);
  fSocket = std::move(socket);
  fReading.reset(reading);
  return Done{};
}

// What the report says stays true until the driver answers: one that refuses each attempt is not to be told
// of as another one each time.
void DriverLink::connect() {
  watchSocketFolder();
  fNextAttempt = Clock::time_point::max();
  if (const Status connected = connectOnce(); !connected) {
    const int error = connected.error().code;
    const DriverState state = driverStateAfter(error, driverIsInstalled(systemUnitFolders()));
    disconnect(state, state == DriverState::kUnreachable ? error : 0);
  }
  setTimer();
}

void DriverLink::watchSocketFolder() {
  if (fFolderWatch != nullptr)
    return;
  const std::string folder = std::filesystem::path(fSocketPath).parent_path();
  sd_event_source* watch = nullptr;
  sd_event_add_inotify(fLoop, &watch, folder.c_str(), IN_CREATE | IN_MOVED_TO | IN_DELETE_SELF | IN_ONLYDIR,
                       folderChanged, this);
  fFolderWatch.reset(watch);
}

void DriverLink::socketFolderChanged(const inotify_event& event) {
  if ((event.mask & (IN_DELETE_SELF | IN_IGNORED | IN_UNMOUNT)) != 0) {
    fFolderWatch.reset();
  } else if (event.len > 0 && event.name == std::filesystem::path(fSocketPath).filename()) {
    tryAgain();
  }
}

void DriverLink::tryAgain() {
  // Two sessions of one user would take the driver from each other without end.
  if (fSocket || (fReport.state == DriverState::kReplaced && !ownSessionIsActive()))
    return;
  fDelay.reset();
  connect();
}

void DriverLink::timePassed() {
  if (!fSocket && Clock::now() >= fNextAttempt)
    connect();
  tellOrders();
  setTimer();
}

void DriverLink::readSome() {
  std::array<std::byte, kLargestPacket> buffer{};
  for (int i = 0; i < kMostReadAtOnce && fSocket; ++i) {
    const ssize_t size = ::recv(fSocket.get(), buffer.data(), buffer.size(), MSG_DONTWAIT | MSG_TRUNC);
    if (size < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
      break;
    // A reset comes before the last words of the driver, which are read next.
    if (size < 0 && (errno == EINTR || errno == ECONNRESET))
      continue;
    if (size <= 0) {
      disconnect(DriverState::kNotRunning);
    } else if (const auto length = static_cast<std::size_t>(size);
               length > buffer.size() || !takeMessage(std::span(buffer.data(), length))) {
      disconnect(DriverState::kIncompatible);
    }
  }
  announce();
  setTimer();
}

bool DriverLink::takeMessage(std::span<const std::byte> message) {
  if (packetKind(message) == PacketKind::kStatus)
    return takeStatus(message);
  if (!fReport.isConnected())
    return false;
  if (const auto device = readPacket<DeviceStatePacket>(message)) {
    fReport.take(*device);
  } else if (const auto button = readPacket<ButtonPacket>(message)) {
    fListener.driverButton(*button);
  } else if (const auto typed = readPacket<KeysTypedPacket>(message)) {
    fListener.driverTyped(*typed);
  } else if (const auto lamps = readPacket<LampsPacket>(message)) {
    fListener.driverLamps(*lamps);
  } else {
    return false;
  }
  return true;
}

bool DriverLink::takeStatus(std::span<const std::byte> message) {
  const auto status = readPacket<StatusPacket>(message);
  if (!status)
    return false;
  const bool isGreeting = !fReport.isConnected();
  DriverReport told = fReport;
  told.take(*status);
  if (!told.isConnected()) {
    disconnect(told.state);
    return true;
  }
  fReport = told;
  if (isGreeting) {
    fConnectedAt = Clock::now();
    fOrders.forget();
    auto monitor = makePacket<MonitorPacket>();
    monitor.wanted = 1;
    if (fMonitored)
      send(bytesOf(monitor));
    tellOrders();
  }
  return true;
}

bool DriverLink::send(std::span<const std::byte> packet) const {
  return ::send(fSocket.get(), packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL) >= 0;
}

void DriverLink::tellOrders() {
  if (!fReport.isConnected())
    return;
  int error = 0;
  const bool told = fOrders.tell(Clock::now(), [&](std::span<const std::byte> packet) {
    const bool sent = send(packet);
    error = sent ? 0 : errno;
    return sent;
  });
  // A connection that has ended is read to its end, where the driver says why. One that hangs has none.
  if (!told && (error == EAGAIN || error == EWOULDBLOCK))
    disconnect(DriverState::kNotRunning);
}

void DriverLink::disconnect(DriverState why, int error) {
  const auto lifetime = fReport.isConnected() ? Clock::now() - fConnectedAt : Clock::duration::zero();
  fReading.reset();
  fSocket.reset();
  fReport.end(why, error);
  const auto delay = fDelay.next(std::chrono::duration_cast<std::chrono::milliseconds>(lifetime));
  fNextAttempt = why == DriverState::kReplaced ? Clock::time_point::max() : Clock::now() + delay;
  announce();
}

void DriverLink::setTimer() {
  auto next = fNextAttempt;
  if (const auto due = fOrders.due(); due && fReport.isConnected())
    next = std::min(next, *due);
  const bool isNeeded = next != Clock::time_point::max();
  if (isNeeded)
    sd_event_source_set_time(fTimer.get(), loopTime(next));
  sd_event_source_set_enabled(fTimer.get(), isNeeded ? SD_EVENT_ONESHOT : SD_EVENT_OFF);
}

void DriverLink::announce() {
  if (fReport == fAnnounced)
    return;
  fAnnounced = fReport;
  fListener.driverReportChanged(fReport);
}

}  // namespace veltrix
