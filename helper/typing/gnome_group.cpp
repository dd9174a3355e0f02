#include "helper/typing/gnome_group.h"

#include <ctime>
#include <utility>

#include "helper/desktop/gsettings.h"
#include "helper/typing/gnome_sources.h"

namespace veltrix {
namespace {

int settingsChanged(sd_bus_message* /*signal*/, void* group, sd_bus_error* /*error*/) {
  static_cast<GnomeGroup*>(group)->ask();
  return 0;
}

}  // namespace

// Whoever changes several settings at once names the folder, so one above counts as well. What changes before
// the bus passes that on is in what is read then.
GnomeGroup::GnomeGroup(sd_event* loop, sd_bus* bus, ProgramStarter::Output output,
                       std::chrono::microseconds grace)
    : fStarter(loop, std::move(output)), fGrace(grace) {
  sd_bus_slot* slot = nullptr;
  const int result = sd_bus_add_match_async(bus, &slot,
                                            "type='signal',interface='ca.desrt.dconf.Writer',member='Notify',"
                                            "arg0path='/org/gnome/desktop/input-sources/'",
                                            settingsChanged, settingsChanged, this);
  fChanges.reset(slot);
  if (result < 0) {
    ask();
  }
}

std::optional<std::uint32_t> GnomeGroup::group() {
  if (fHasFailed && now() >= fNextAttempt) {
    ask();
  }
  return fGroup;
}

void GnomeGroup::ask() {
  if (fIsAsking) {
    fHasChanged = true;
    return;
  }
  fIsAsking = true;
  runGsettings(fStarter, {"list-recursively", "org.gnome.desktop.input-sources"}, fGrace,
               [this](const Result<std::string>& listed) { take(listed); });
}

void GnomeGroup::take(const Result<std::string>& listed) {
  fIsAsking = false;
  fHasFailed = !listed || listed.value().empty();
  fGroup = fHasFailed ? std::nullopt : groupOfSources(listed.value());
  if (!fHasFailed) {
    fDelay.reset();
  }
  fNextAttempt = now() + static_cast<std::uint64_t>(std::chrono::microseconds(fDelay.next()).count());
  if (std::exchange(fHasChanged, false)) {
    ask();
  }
}

std::uint64_t GnomeGroup::now() const {
  std::uint64_t time = 0;
  sd_event_now(fStarter.loop(), CLOCK_MONOTONIC, &time);
  return time;
}

}  // namespace veltrix
