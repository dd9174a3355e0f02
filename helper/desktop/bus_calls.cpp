#include "helper/desktop/bus_calls.h"

#include <systemd/sd-bus.h>

#include <cerrno>
#include <cstring>

#include "util/phrase.h"

namespace veltrix {
namespace {

struct Appender {
  sd_bus_message* message;

  int operator()(std::monostate /*none*/) const { return 0; }
  int operator()(bool value) const { return sd_bus_message_append(message, "b", value ? 1 : 0); }
  int operator()(std::int32_t value) const { return sd_bus_message_append(message, "i", value); }
  int operator()(std::uint32_t value) const { return sd_bus_message_append(message, "u", value); }
  int operator()(const char* value) const { return sd_bus_message_append(message, "s", value); }
  int operator()(const BusOptions& options) const {
    return sd_bus_message_append(message, "a{sv}", 1, options.key, "b", options.value ? 1 : 0);
  }
};

Error failure(int negativeErrno, const char* what) {
  return phrasedError(-negativeErrno, {"%1: %2", {{what, {}}, {std::strerror(-negativeErrno), {}}}});
}

Result<BusMessageHandle> messageFor(sd_bus* bus, const BusAttempt& attempt) {
  sd_bus_message* message = nullptr;
  int result = sd_bus_message_new_method_call(bus, &message, attempt.service, attempt.path, attempt.interface,
                                              attempt.method);
  BusMessageHandle handle(message);
  if (result >= 0) {
    result = sd_bus_message_set_auto_start(message, attempt.starts ? 1 : 0);
  }
  if (result >= 0 && attempt.asksPerson) {
    result = sd_bus_message_set_allow_interactive_authorization(message, 1);
  }
  for (const BusArgument& argument : attempt.arguments) {
    result = result < 0 ? result : std::visit(Appender{message}, argument);
  }
  if (result < 0) {
    return failure(result, attempt.method);
  }
  return handle;
}

}  // namespace

SessionBusCalls::SessionBusCalls(sd_event* loop, sd_bus* session, BusCallLimits limits)
    : fLoop(loop), fSession(session), fLimits(limits), fCalls(loop), fPlayers(loop, session, limits.answer) {}

Result<sd_bus*> SessionBusCalls::busOf(const BusAttempt& attempt) {
  if (attempt.bus == BusAttempt::Bus::kSession) {
    return fSession;
  }
  if (fSystem != nullptr && sd_bus_is_open(fSystem.get()) > 0) {
    return fSystem.get();
  }
  sd_bus* bus = nullptr;
  int result = sd_bus_open_system(&bus);
  BusHandle opened(bus);
  if (result >= 0) {
    result = sd_bus_attach_event(bus, fLoop, SD_EVENT_PRIORITY_NORMAL);
  }
  if (result < 0) {
    return failure(result, "cannot connect to the system bus");
  }
  fSystem = std::move(opened);
  return fSystem.get();
}

void SessionBusCalls::call(const BusAttempt& attempt, Ended ended) {
  const Result<sd_bus*> bus = busOf(attempt);
  if (!bus) {
    ended(bus.error());
    return;
  }
  const Result<BusMessageHandle> message = messageFor(bus.value(), attempt);
  if (!message) {
    ended(message.error());
    return;
  }
  const std::string method = attempt.method;
  fCalls.send(bus.value(), message.value().get(), attempt.asksPerson ? fLimits.person : fLimits.answer,
              [method, late = attempt.answersLate, ended = std::move(ended)](sd_bus_message* /*reply*/,
                                                                             const Status& status) {
                const bool isDone = status || (late && status.error().code == ETIMEDOUT);
                ended(isDone ? Status(Done{})
                             : phrasedError(status.error().code,
                                            {"%1: %2", {given(method), phraseOf(status.error())}}));
              });
}

void SessionBusCalls::controlPlayer(const PlayerAttempt& attempt, Ended ended) {
  fPlayers.control(attempt, std::move(ended));
}

}  // namespace veltrix
