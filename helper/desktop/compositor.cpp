#include "helper/desktop/compositor.h"

#include <sys/socket.h>

#include <cerrno>

#include "helper/desktop/compositor_socket.h"
#include "helper/desktop/compositor_wire.h"

namespace veltrix {
namespace {

constexpr std::size_t kMostWaiting = 16;

int socketReady(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* compositor) {
  static_cast<Compositor*>(compositor)->exchange();
  return 0;
}

int deadlinePassed(sd_event_source* /*source*/, std::uint64_t /*now*/, void* compositor) {
  static_cast<Compositor*>(compositor)->timePassed();
  return 0;
}

Error gone() {
  return {ECONNRESET, "the compositor closed the connection", {}};
}

}  // namespace

Compositor::Compositor(sd_event* loop, std::string socketPath, std::chrono::milliseconds limit)
    : fLoop(loop), fPath(std::move(socketPath)), fLimit(limit) {}

void Compositor::tell(std::string_view command, Ended ended) {
  if (fPath.empty()) {
    ended(Error{0, "the compositor has no socket for commands", {}});
  } else if (fWaiting.size() >= kMostWaiting) {
    ended(Error{0, "too much is asked of the compositor at once", {}});
  } else {
    fWaiting.emplace_back(compositorCommand(command), std::move(ended));
    if (fWaiting.size() == 1) {
      begin();
    }
  }
}

void Compositor::begin() {
  fUnsent = fWaiting.front().first;
  fReceived.clear();
  if (const Status connected = connect(); !connected) {
    failAll(connected.error());
    return;
  }
  sd_event_source* ready = nullptr;
  int result = sd_event_add_io(fLoop, &ready, fSocket.get(), EPOLLOUT, socketReady, this);
  fReady.reset(ready);
  sd_event_source* deadline = nullptr;
  if (result >= 0) {
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(fLimit).count();
    result = sd_event_add_time_relative(fLoop, &deadline, CLOCK_MONOTONIC,
                                        static_cast<std::uint64_t>(microseconds), 0, deadlinePassed, this);
  }
  fDeadline.reset(deadline);
  if (result < 0) {
    failAll({-result, "cannot watch the compositor", {}});
  }
}

Status Compositor::connect() {
  auto connected = connectToCompositor(fPath);
  if (!connected) {
    return connected.error();
  }
  fSocket = std::move(connected.value());
  return Done{};
}

void Compositor::exchange() {
  if (!fUnsent.empty()) {
    if (const Status sent = send(); !sent) {
      end(sent);
    }
    return;
  }
  const Result<bool> complete = receive();
  if (!complete) {
    end(complete.error());
  } else if (complete.value()) {
    end(compositorOutcome(std::string_view(fReceived).substr(kCompositorHeader)));
  }
}

Status Compositor::send() {
  const ssize_t sent = ::send(fSocket.get(), fUnsent.data(), fUnsent.size(), MSG_NOSIGNAL);
  if (sent < 0) {
    return errno == EAGAIN || errno == EINTR ? Status(Done{}) : gone();
  }
  fUnsent.erase(0, static_cast<std::size_t>(sent));
  if (fUnsent.empty()) {
    sd_event_source_set_io_events(fReady.get(), EPOLLIN);
  }
  return Done{};
}

Result<bool> Compositor::receive() {
  char bytes[4096];
  const ssize_t count = recv(fSocket.get(), bytes, sizeof bytes, 0);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
    return false;
  }
  if (count <= 0) {
    return gone();
  }
  fReceived.append(bytes, static_cast<std::size_t>(count));
  if (fReceived.size() < kCompositorHeader) {
    return false;
  }
  const auto length = compositorAnswerLength(std::string_view(fReceived).substr(0, kCompositorHeader));
  if (!length) {
    return length.error();
  }
  if (fReceived.size() > kCompositorHeader + length.value()) {
    return Error{0, "the compositor says more than was asked", {}};
  }
  return fReceived.size() == kCompositorHeader + length.value();
}

void Compositor::timePassed() {
  failAll({ETIMEDOUT, "the compositor does not answer", {}});
}

void Compositor::end(const Status& status) {
  fReady.reset();
  fDeadline.reset();
  fSocket.reset();
  const Ended ended = std::move(fWaiting.front().second);
  fWaiting.pop_front();
  if (!fWaiting.empty()) {
    begin();
  }
  ended(status);
}

void Compositor::failAll(const Error& error) {
  fReady.reset();
  fDeadline.reset();
  fSocket.reset();
  for (auto& [command, ended] : std::exchange(fWaiting, {})) {
    ended(error);
  }
}

}  // namespace veltrix
