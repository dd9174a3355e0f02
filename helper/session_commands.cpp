#include "helper/session_commands.h"

#include <cstdlib>
#include <utility>

#include "platform/resource_folder.h"
#include "settings/command_classes.h"

namespace veltrix {

namespace {

std::string_view environmentText(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

SessionKind ownSessionKind() {
  return sessionKindOf(environmentText("XDG_CURRENT_DESKTOP"), environmentText("WAYLAND_DISPLAY"),
                       environmentText("DISPLAY"));
}

// GNOME's input method takes a number in every program. Elsewhere some programs would and others would run
// the shortcuts instead.
UnicodeInput unicodeInputOf(const SessionKind& kind) {
  return kind.desktop == kOnGnome ? UnicodeInput::kControlShiftU : UnicodeInput::kNone;
}

int alarmRang(sd_event_source* /*source*/, std::uint64_t /*time*/, void* commands) {
  static_cast<SessionCommands*>(commands)->alarm();
  return 0;
}

}  // namespace

SessionCommands::SessionCommands(Surroundings surroundings)
    : fLoop(surroundings.loop),
      fReport(std::move(surroundings.report)),
      fKind(ownSessionKind()),
      fPlanner(fLoop, unicodeInputOf(fKind),
               makeGroupSource(fLoop, surroundings.bus, std::string(environmentText("SWAYSOCK")), fKind)),
      fTypist(typistSurroundings(surroundings.keys)),
      fDisplay(fLoop, DisplayAddresses::ofEnvironment()),
      fBusCalls(fLoop, surroundings.bus),
      fLauncher(launcherSurroundings(surroundings.bus)),
      fActions(surroundings.core),
      fRunner(fKind, {fTypist, fDisplay, fBusCalls, fLauncher}, fActions, fReport) {}

Typist::Surroundings SessionCommands::typistSurroundings(KeySender& keys) {
  return {keys, fPlanner, Typist::Clock::now, [this](auto when) { setAlarm(when); }};
}

LauncherSurroundings SessionCommands::launcherSurroundings(sd_bus* bus) {
  LauncherSurroundings result;
  result.loop = fLoop;
  result.bus = bus;
  result.desktop = fKind.desktop;
  result.resourceFolder = standardResourceFolder();
  result.scriptFailed = [this](const Error& error) { fReport(problemOf(kRunScriptCommand, error)); };
  return result;
}

void SessionCommands::driverGone() {
  fRunner.forgetButtons();
  fTypist.forget();
  fPlanner.setLamps(0);
}

void SessionCommands::setAlarm(std::optional<Typist::Clock::time_point> when) {
  fAlarm.reset();
  if (!when)
    return;
  const auto time = std::chrono::duration_cast<std::chrono::microseconds>(when->time_since_epoch());
  sd_event_source* source = nullptr;
  sd_event_add_time(fLoop, &source, CLOCK_MONOTONIC, static_cast<std::uint64_t>(time.count()), 0, alarmRang,
                    this);
  fAlarm.reset(source);
}

}  // namespace veltrix
