#include "helper/helper_service.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "helper/desktop/one_line.h"
#include "helperlink/helper_protocol.h"

namespace veltrix {

namespace {

constexpr const char* kHelperApplication = "VeltrixHelper";
constexpr const char* kPaneApplication = "VeltrixPane";

int readSettings(sd_event_source* /*source*/, void* core) {
  static_cast<HelperCore*>(core)->settle();
  return 0;
}

}  // namespace

HelperService::HelperService(sd_bus* bus, sd_event* loop, HelperCore& core, bool simulated)
    : fBus(bus), fLoop(loop), fCore(core), fStatus(core, simulated) {
  fCore.setObserver(this);
}

HelperService::~HelperService() {
  fCore.setObserver(nullptr);
}

Status HelperService::publish() {
  sd_event_source* reading = nullptr;
  int result = sd_event_add_defer(fLoop, &reading, readSettings, &fCore);
  fReading.reset(reading);
  if (result >= 0)
    result = sd_event_source_set_enabled(reading, SD_EVENT_OFF);
  // After the messages that have arrived already: a burst of them costs one reading.
  if (result >= 0)
    result = sd_event_source_set_priority(reading, SD_EVENT_PRIORITY_IDLE);
  if (result < 0) {
    return Error{-result, std::string("cannot prepare the event loop: ") + std::strerror(-result),
                 std::nullopt};
  }
  auto receiver = EventReceiver::onBus(
      fBus, [this](const IncomingEvent& event, EventReply* reply) { return fCore.takeEvent(event, reply); });
  if (!receiver)
    return receiver.error();
  fReceiver = std::move(receiver.value());
  if (Status published = fMonitor.publish(fBus); !published)
    return published;
  return fStatus.publish(fBus);
}

Result<bool> HelperService::claimNames() {
  // The name of the process first: whoever sees the name of the helper finds the process's as well.
  const ProcessSerialNumber self{.startTime = 0, .pid = static_cast<std::uint32_t>(getpid())};
  Result<bool> claimed = claimBusName(fBus, EventAddress(kHelperApplication, self).busName());
  if (!claimed || !claimed.value())
    return claimed;
  return claimBusName(fBus, EventAddress(kHelperApplication).busName());
}

Status HelperService::startDriver(const std::string& socketPath) {
  fDriver = std::make_unique<DriverLink>(fLoop, socketPath, *this);
  fStatus.setDriver(fDriver->report());
  fCommands = std::make_unique<SessionCommands>(SessionCommands::Surroundings{
      fLoop, fBus, fCore, *fDriver, [this](const CommandProblem& problem) { commandFailed(problem); }});
  Status started = fDriver->start();
  tellDriver();
  return started;
}

void HelperService::startJump(const std::string& programPath) {
  fJump = std::make_unique<JumpProgram>(fLoop, programPath,
                                        [this](const JumpReport& report) { fStatus.setJump(report); });
  decideJump();
}

void HelperService::decideJump() {
  const auto wants = [](const ConnectedDevice& device) { return device.record.jumps; };
  const bool isPossible = (fCore.deviceList().helperState & kVeltrixHelperStateAccessibility) != 0;
  if (fJump != nullptr)
    fJump->setWanted(isPossible && std::any_of(fCore.devices().begin(), fCore.devices().end(), wants));
}

void HelperService::setMonitored(bool monitored) {
  if (fDriver != nullptr)
    fDriver->setMonitored(monitored);
}

void HelperService::tellDriver() {
  if (fDriver != nullptr)
    fDriver->setDevices(fCore.devices());
}

void HelperService::readingIsDue() {
  sd_event_source_set_enabled(fReading.get(), SD_EVENT_ONESHOT);
}

void HelperService::settingsRead() {
  tellDriver();
  decideJump();
  fStatus.announce({"Generation", "SettingsState", "SettingsError", "Records"});
}

void HelperService::devicesChanged() {
  tellDriver();
  decideJump();
  Event event(EventAddress(kPaneApplication), kVeltrixEventClass, kDeviceStateEvent);
  const DeviceState state = fCore.deviceState();
  // Nobody waits for it and a pane that is not there misses nothing: it asks for the devices itself.
  if (event.putParameter(kDirectObjectKeyword, kDeviceStateType, state) == 0)
    queueEvent(fBus, event);
  fStatus.announce({"Devices", "Records", "AccessibilityGranted"});
}

void HelperService::messageTaken() {
  fStatus.announce({"LastMessage", "RecentMessages", "PaneShown"});
}

void HelperService::driverReportChanged(const DriverReport& report) {
  fStatus.setDriver(report);
  if (!report.isConnected())
    fCommands->driverGone();
}

void HelperService::driverButton(const ButtonPacket& packet) {
  fMonitor.tell(packet);
  fCommands->take(packet);
}

void HelperService::driverTyped(const KeysTypedPacket& packet) {
  fCommands->take(packet);
}

void HelperService::driverLamps(const LampsPacket& packet) {
  fCommands->take(packet);
}

void HelperService::commandFailed(const CommandProblem& problem) {
  std::fprintf(stderr, "VeltrixHelper: command %u failed: %s\n", problem.command, problem.reason.c_str());
  fStatus.addProblem(problem);
  const auto inLanguage = [this](const std::string& english) {
    return fBundle.localizedString(english, "", kStringTable);
  };
  fNotice.show(inLanguage("A button's command did not work"), oneLine(said(problem.phrase, inLanguage)));
}

}  // namespace veltrix
