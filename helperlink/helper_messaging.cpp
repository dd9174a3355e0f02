#include "helperlink/helper_messaging.h"

#include <array>
#include <chrono>
#include <cstring>
#include <memory>
#include <string>

#include "helperlink/helper_link_services.h"
#include "helperlink/helper_protocol.h"
#include "platform/bus_event_transport.h"
#include "util/byte_strings.h"

namespace veltrix {

namespace {

constexpr std::chrono::milliseconds kReplyTimeout{250};
constexpr std::size_t kLongestPascalString = 255;

HelperLinkServices gServices;  // NOLINT(readability-identifier-naming)

ProcessTable& processes() {
  static const std::unique_ptr<ProcessTable> kReal = makeProcessTable();
  return gServices.processes != nullptr ? *gServices.processes : *kReal;
}

EventTransport& events() {
  static const std::unique_ptr<EventTransport> kReal = makeBusEventTransport();
  return gServices.events != nullptr ? *gServices.events : *kReal;
}

bool sameName(const unsigned char* wanted, const std::string& name) {
  // Longer than any Pascal string, so different from all of them.
  if (name.size() > kLongestPascalString)
    return false;
  std::array<unsigned char, kLongestPascalString + 1> candidate{};
  candidate[0] = static_cast<unsigned char>(name.size());
  std::memcpy(candidate.data() + 1, name.data(), name.size());
  return PStringCmp(wanted, candidate.data()) == 0;
}

// The helper's bus name is spelled one way, however its process spells its own.
std::string helperApplication() {
  const std::string pascal(std::begin(kHelperProcessName), std::end(kHelperProcessName));
  return pascal.substr(1, kHelperProcessName[0]);
}

std::int32_t findHelper(ProcessSerialNumber* psn) {
  return VeltrixFindNamedProcess(kHelperProcessName, psn);
}

Event helperEvent(const ProcessSerialNumber& helper, std::uint32_t eventId) {
  return Event(EventAddress(helperApplication(), helper), kVeltrixEventClass, eventId);
}

}  // namespace

HelperLinkServices setHelperLinkServices(const HelperLinkServices& services) {
  const HelperLinkServices former = gServices;
  gServices = services;
  return former;
}

}  // namespace veltrix

std::int16_t VeltrixFindNamedProcess(const unsigned char* name, veltrix::ProcessSerialNumber* psn) {
  veltrix::ProcessTable& processes = veltrix::processes();
  veltrix::ProcessSerialNumber current;
  for (;;) {
    std::int16_t status = processes.nextProcess(&current);
    if (status != 0)
      return status;
    std::string currentName;
    status = processes.processName(current, &currentName);
    if (status != 0)
      return status;
    if (!veltrix::sameName(name, currentName))
      continue;
    if (psn != nullptr)
      *psn = current;
    return 0;
  }
}

std::int32_t VeltrixGetConnectedDevices(VeltrixDeviceList* list) {
  if (list == nullptr)
    return veltrix::kEventParameterError;
  veltrix::ProcessSerialNumber helper;
  std::int32_t status = veltrix::findHelper(&helper);
  if (status != 0)
    return status;
  veltrix::EventReply reply;
  status = veltrix::events().sendWaitingForReply(
      veltrix::helperEvent(helper, veltrix::kGetConnectedDevicesEvent), veltrix::kReplyTimeout, &reply);
  if (status != 0)
    return status;
  return reply.parameter().read(veltrix::kDirectObjectKeyword, veltrix::kDeviceListType, list, sizeof *list,
                                nullptr);
}

std::int32_t VeltrixSendMessageToHelper(std::uint32_t message) {
  veltrix::ProcessSerialNumber helper;
  std::int32_t status = veltrix::findHelper(&helper);
  if (status != 0)
    return status;
  veltrix::Event event = veltrix::helperEvent(helper, veltrix::kHelperMessageEvent);
  status = event.putParameter(veltrix::kDirectObjectKeyword, veltrix::kUnsigned32Type,
                              std::as_bytes(std::span(&message, 1)));
  return status != 0 ? status : veltrix::events().sendWithoutReply(event);
}
