#pragma once

#include <cstdint>

#include "helper/desktop/application_finder.h"
#include "helper/desktop/bus_activation.h"
#include "helper/desktop/program_starter.h"

namespace veltrix {

// Starts applications in the way that each asks for.
class ApplicationStarter {
 public:
  // `desktop` is a kOn… bit; `starter` and `bus` (null for none) must outlive the object.
  ApplicationStarter(ProgramStarter& starter, sd_bus* bus, std::uint8_t desktop)
      : fStarter(starter), fActivation(bus), fDesktop(desktop) {}

  // Over the session bus when it can be activated there, which brings one that runs to the front; else, and
  // when nobody there knows it, its program, in a terminal when it needs one.
  void start(const InstalledApplication& application, ProgramStarter::Exit ended);

 private:
  Status startProgramOf(const InstalledApplication& application);

  ProgramStarter& fStarter;
  BusActivation fActivation;
  std::uint8_t fDesktop;
};

}  // namespace veltrix
