#include "helper/typing/sway_group.h"

#include <sys/epoll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <utility>

#include "helper/desktop/compositor_socket.h"

namespace veltrix {
namespace {

// The rest can wait until others have had their turn.
constexpr int kMostReadAtOnce = 32;

int socketReady(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* group) {
  static_cast<SwayGroup*>(group)->serve();
  return 0;
}

}  // namespace

SwayGroup::SwayGroup(sd_event* loop, std::string socketPath) : fLoop(loop), fPath(std::move(socketPath)) {
  connect();
}

std::optional<std::uint32_t> SwayGroup::group() {
  connect();
  serve();
  if (fKeyboards.empty()) {
    return std::nullopt;
  }
  const auto own = std::find_if(fKeyboards.begin(), fKeyboards.end(),
                                [](const auto& keyboard) { return keyboard.name == kTypingKeyboard; });
  if (own != fKeyboards.end()) {
    return own->group;
  }
  const CompositorKeyboard* const changed = find(fChangedLast);
  return changed != nullptr ? changed->group : fKeyboards.front().group;
}

// The events are asked for first, so that no change falls between the list and them.
void SwayGroup::connect() {
  if (fSocket || now() < fNextAttempt) {
    return;
  }
  if (auto connected = connectToCompositor(fPath)) {
    fSocket = std::move(connected.value());
    sd_event_source* source = nullptr;
    const int added = sd_event_add_io(fLoop, &source, fSocket.get(), EPOLLIN, socketReady, this);
    fReady.reset(source);
    if (added < 0 || !ask(CompositorKind::kSubscription, R"(["input"])") ||
        !ask(CompositorKind::kInputs, {})) {
      disconnect();
    }
  }
  fNextAttempt = now() + static_cast<std::uint64_t>(std::chrono::microseconds(fDelay.next()).count());
}

void SwayGroup::disconnect() {
  fReady.reset();
  fSocket.reset();
  fReceived.clear();
  fKeyboards.clear();
  fChangedLast.clear();
}

// A few bytes always find room, unless the compositor has hung for long.
bool SwayGroup::ask(CompositorKind kind, std::string_view body) {
  const std::string message = compositorMessage(kind, body);
  return send(fSocket.get(), message.data(), message.size(), MSG_NOSIGNAL) ==
         static_cast<ssize_t>(message.size());
}

void SwayGroup::serve() {
  if (fSocket && (!readSome() || !takeMessages())) {
    disconnect();
  }
}

// False when the connection is over. What came before its end no longer matters then.
bool SwayGroup::readSome() {
  for (int i = 0; i < kMostReadAtOnce; ++i) {
    char bytes[4096];
    const ssize_t count = recv(fSocket.get(), bytes, sizeof bytes, 0);
    if (count <= 0) {
      return count < 0 && (errno == EAGAIN || errno == EINTR);
    }
    fReceived.append(bytes, static_cast<std::size_t>(count));
  }
  return true;
}

bool SwayGroup::takeMessages() {
  std::string_view rest = fReceived;
  while (rest.size() >= kCompositorHeader) {
    const auto head = compositorHead(rest.substr(0, kCompositorHeader));
    if (!head) {
      return false;
    }
    if (rest.size() < kCompositorHeader + head.value().length) {
      break;
    }
    if (!take(head.value().kind, rest.substr(kCompositorHeader, head.value().length))) {
      return false;
    }
    rest.remove_prefix(kCompositorHeader + head.value().length);
  }
  fReceived.erase(0, fReceived.size() - rest.size());
  return true;
}

// False for what makes the rest worthless.
bool SwayGroup::take(CompositorKind kind, std::string_view body) {
  if (kind == CompositorKind::kSubscription) {
    return compositorSubscribed(body);
  }
  if (kind == CompositorKind::kInputs) {
    auto keyboards = compositorKeyboards(body);
    if (keyboards) {
      fKeyboards = std::move(keyboards.value());
      fDelay.reset();
    }
    return static_cast<bool>(keyboards);
  }
  if (kind == CompositorKind::kInputEvent) {
    const auto change = compositorInputChange(body);
    return change && takeChange(change.value());
  }
  return true;
}

// Two keyboards of one make have one identifier, so what comes and goes is asked for instead of counted.
bool SwayGroup::takeChange(const CompositorInputChange& change) {
  if (change.change == "added" || change.change == "removed") {
    return ask(CompositorKind::kInputs, {});
  }
  if (!change.keyboard) {
    return true;
  }
  if (change.change == "xkb_layout") {
    fChangedLast = change.keyboard->identifier;
  }
  if (auto* const known = find(change.keyboard->identifier)) {
    known->group = change.keyboard->group;
  }
  return true;
}

CompositorKeyboard* SwayGroup::find(const std::string& identifier) {
  const auto found = std::find_if(fKeyboards.begin(), fKeyboards.end(),
                                  [&](const auto& keyboard) { return keyboard.identifier == identifier; });
  return found == fKeyboards.end() ? nullptr : &*found;
}

std::uint64_t SwayGroup::now() const {
  std::uint64_t time = 0;
  sd_event_now(fLoop, CLOCK_MONOTONIC, &time);
  return time;
}

}  // namespace veltrix
