#include "helper/desktop/bus_activation.h"

#include <systemd/sd-bus.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

#include "helper/desktop/one_line.h"
#include "platform/session_bus.h"
#include "util/phrase.h"

namespace veltrix {

namespace {

constexpr const char* kInterface = "org.freedesktop.Application";
constexpr std::chrono::microseconds kPatience = std::chrono::seconds(25);  // an application has to start

// Of the application's object: its name with slashes for dots, and what a path cannot hold replaced.
std::string objectPath(const std::string& name) {
  std::string path = "/" + name;
  std::replace(path.begin(), path.end(), '.', '/');
  std::replace(path.begin(), path.end(), '-', '_');
  return path;
}

Error unanswered(int code, const std::string& name, const std::string& reason) {
  return phrasedError(code, {"cannot activate %1: %2", {given(oneLine(name)), {oneLine(reason), {}}}});
}

}  // namespace

BusActivation::~BusActivation() {
  for (const Call& call : fCalls) {
    sd_bus_slot_unref(call.slot);
  }
}

void BusActivation::activate(const std::string& identifier, Ended ended) {
  if (fBus == nullptr || sd_bus_service_name_is_valid(identifier.c_str()) <= 0) {
    ended(unanswered(EINVAL, identifier, fBus == nullptr ? "there is no bus" : "this is no name on the bus"));
    return;
  }
  sd_bus_message* raw = nullptr;
  int result = sd_bus_message_new_method_call(fBus, &raw, identifier.c_str(), objectPath(identifier).c_str(),
                                              kInterface, "Activate");
  const BusMessageHandle message(raw);
  if (result >= 0) {
    result = sd_bus_message_append(raw, "a{sv}", 0);
  }
  Call& call = fCalls.emplace_back();
  call.owner = this;
  call.name = identifier;
  call.place = std::prev(fCalls.end());
  if (result >= 0) {
    result = sd_bus_call_async(
        fBus, &call.slot, raw,
        [](sd_bus_message* answer, void* data, sd_bus_error* error) { return answered(answer, data, error); },
        &call, static_cast<std::uint64_t>(kPatience.count()));
  }
  if (result < 0) {
    fCalls.erase(call.place);
    ended(unanswered(-result, identifier, "the bus does not take the call"));
    return;
  }
  call.ended = std::move(ended);
}

int BusActivation::answered(sd_bus_message* answer, void* data, void* /*error*/) {
  auto* const call = static_cast<Call*>(data);
  const Ended ended = std::move(call->ended);
  const std::string name = call->name;
  sd_bus_slot_unref(call->slot);
  call->owner->fCalls.erase(call->place);
  const sd_bus_error* const error = sd_bus_message_get_error(answer);
  if (error == nullptr) {
    ended(Done());
  } else {
    const bool late =
        sd_bus_error_get_errno(error) == ETIMEDOUT || sd_bus_error_has_name(error, SD_BUS_ERROR_NO_REPLY) > 0;
    ended(
        unanswered(late ? ETIMEDOUT : ENOENT, name, error->message != nullptr ? error->message : "refused"));
  }
  return 0;
}

}  // namespace veltrix
