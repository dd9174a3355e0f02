#include "driver/link_server.h"

#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/timerfd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "driver/link_socket.h"
#include "driverlink/packet_rules.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

// So that neither a crowd at the door nor a helper that talks without end holds up the trackballs.
constexpr int kMostAcceptedAtOnce = 8;
constexpr int kMostReadAtOnce = 32;

// How long nobody is let in when descriptors or memory have run out.
constexpr time_t kPauseSeconds = 1;

std::optional<uid_t> peerOf(int socket) {
  ucred credentials{};
  socklen_t size = sizeof credentials;
  if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0)
    return std::nullopt;
  return credentials.uid;
}

void sendStatus(int socket, const StatusPacket& packet) noexcept {
  ::send(socket, &packet, sizeof packet, MSG_DONTWAIT | MSG_NOSIGNAL);
}

// The end of a connection with unread messages reaches the other side as an error, before the answer that
// explains it.
void discardUnread(int socket) noexcept {
  std::byte byte{};
  for (int i = 0; i<kMostReadAtOnce&& ::recv(socket, &byte, sizeof byte, MSG_DONTWAIT)> 0; ++i) {
  }
}

}  // namespace

LinkServer::LinkServer(PollLoop& loop, ActiveUser& user, HelperRequests& requests, LinkServerOptions options)
    : fLoop(loop), fUser(user), fRequests(requests), fOptions(std::move(options)), fReader(requests) {}

LinkServer::~LinkServer() {
  stop(DriverAnswer::kStopping);
}

Status LinkServer::start() {
  Result<FileDescriptor> socket = passedSocket();
  if (socket && !socket.value()) {
    socket = listenAt(fOptions.socketPath);
    fOwnsPath = socket.ok();
  }
  if (!socket)
    return socket.error();
  fListener = std::move(socket.value());
  fPause.reset(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC));
  if (!fPause)
    return systemError(errno, "make", "a timer");
  Status added = fLoop.add(fPause.get(), EPOLLIN, fPausePort);
  if (!added) {
    fPause.reset();
    return added;
  }
  added = fLoop.add(fListener.get(), EPOLLIN, fListenerPort);
  fListening = added.ok();
  fUser.setListener(this);
  return added;
}

void LinkServer::stop(DriverAnswer answer) noexcept {
  fUser.setListener(nullptr);
  if (fListening)
    fLoop.remove(fListener.get());
  fListening = false;
  if (fPause)
    fLoop.remove(fPause.get());
  fPause.reset();
  // First the name, so that nobody waits at a socket that is about to go.
  if (fOwnsPath)
    ::unlink(fOptions.socketPath.c_str());
  fOwnsPath = false;
  fListener.reset();
  disconnect(answer);
}

void LinkServer::send(std::span<const std::byte> packet) noexcept {
  if (!fHelper || ::send(fHelper.get(), packet.data(), packet.size(), MSG_DONTWAIT | MSG_NOSIGNAL) >= 0)
    return;
  if (errno == EAGAIN || errno == EWOULDBLOCK)
    std::fputs("the helper does not read what it is told; its connection ends\n", stderr);
  // The loop reports it next: the caller is not to find everything released while it is telling of it.
  ::shutdown(fHelper.get(), SHUT_RDWR);
}

void LinkServer::activeUserChanged() noexcept {
  fLastRefused.reset();
  if (fHelper && fUser.current() != fHelperUser)
    disconnect(DriverAnswer::kNotTheActiveUser);
}

void LinkServer::acceptSome() noexcept {
  for (int i = 0; i < kMostAcceptedAtOnce && fListener; ++i) {
    FileDescriptor socket(::accept4(fListener.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (socket) {
      judge(std::move(socket));
    } else if (errno != EINTR && errno != ECONNABORTED) {
      // Whatever else is wrong would be reported again at once, without end.
      if (errno != EAGAIN && errno != EWOULDBLOCK)
        pauseListening(errno);
      return;
    }
  }
}

void LinkServer::judge(FileDescriptor socket) noexcept {
  const std::optional<uid_t> peer = peerOf(socket.get());
  if (peer && peer == fUser.current()) {
    admit(std::move(socket), *peer);
    return;
  }
  if (peer && peer != fLastRefused)
    std::fprintf(stderr, "user %u is refused, who is not at the screen\n", static_cast<unsigned>(*peer));
  fLastRefused = peer;
  sendStatus(socket.get(), statusPacket(DriverAnswer::kNotTheActiveUser));
  discardUnread(socket.get());
}

void LinkServer::admit(FileDescriptor socket, uid_t user) noexcept {
  disconnect(user == fHelperUser ? DriverAnswer::kReplaced : DriverAnswer::kNotTheActiveUser);
  if (!fLoop.add(socket.get(), EPOLLIN, fHelperPort))
    return;
  fHelper = std::move(socket);
  fHelperUser = user;
  fReader.reset();
  const StatusPacket accepted = statusPacket(DriverAnswer::kAccepted);
  send(std::as_bytes(std::span(&accepted, 1)));
  fRequests.helperArrived();
}

void LinkServer::readSome() noexcept {
  std::array<std::byte, kLargestPacket> buffer{};
  for (int i = 0; i < kMostReadAtOnce && fHelper; ++i) {
    // The true length even of a message that is too long.
    const ssize_t size = ::recv(fHelper.get(), buffer.data(), buffer.size(), MSG_DONTWAIT | MSG_TRUNC);
    if (size < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR))
      return;
    if (size <= 0) {
      disconnect(std::nullopt);
      return;
    }
    const auto length = static_cast<std::size_t>(size);
    if (length > buffer.size() || !fReader.take(std::span(buffer.data(), length), fLoop.now())) {
      std::fputs("the helper breaks a rule; its connection ends\n", stderr);
      disconnect(DriverAnswer::kBrokenRule);
    }
  }
}

void LinkServer::disconnect(std::optional<DriverAnswer> answer) noexcept {
  if (!fHelper)
    return;
  fLoop.remove(fHelper.get());
  {
    const FileDescriptor helper = std::move(fHelper);
    if (answer)
      sendStatus(helper.get(), statusPacket(*answer));
    discardUnread(helper.get());
  }
  fRequests.helperGone();
}

void LinkServer::pauseListening(int error) noexcept {
  std::fprintf(stderr, "cannot let anybody in for a while: %s\n", std::strerror(error));
  fLoop.remove(fListener.get());
  fListening = false;
  const itimerspec once{.it_interval = {}, .it_value = {.tv_sec = kPauseSeconds, .tv_nsec = 0}};
  timerfd_settime(fPause.get(), 0, &once, nullptr);
}

void LinkServer::listenAgain() noexcept {
  std::uint64_t expirations = 0;
  if (::read(fPause.get(), &expirations, sizeof expirations) < 0 || fListening)
    return;
  const Status added = fLoop.add(fListener.get(), EPOLLIN, fListenerPort);
  fListening = added.ok();
  if (!added) {
    fListening = true;  // removing it once more does no harm
    pauseListening(added.error().code);
  }
}

StatusPacket LinkServer::statusPacket(DriverAnswer answer) const noexcept {
  auto packet = makePacket<StatusPacket>();
  packet.answer = static_cast<std::uint16_t>(answer);
  packet.outputs = fRequests.hasOutputs() ? 1 : 0;
  fOptions.driverVersion.copy(packet.driverVersion, sizeof packet.driverVersion - 1);
  return packet;
}

}  // namespace veltrix
