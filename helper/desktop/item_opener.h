#pragma once

#include <chrono>
#include <string>

#include "helper/desktop/program_starter.h"

namespace veltrix {

// Opens things by what the user prefers for their type. Which application that is, the desktop's own programs
// know.
class ItemOpener {
 public:
  // An opener that still runs after `grace` counts as one that has opened the thing. `starter` must outlive
  // the object and what it has begun.
  ItemOpener(ProgramStarter& starter, std::chrono::microseconds grace) : fStarter(starter), fGrace(grace) {}

  // An absolute path, or an address that begins with its scheme; neither can be taken for an option.
  void open(const std::string& item, ProgramStarter::Exit ended) const;

 private:
  ProgramStarter& fStarter;
  std::chrono::microseconds fGrace;
};

}  // namespace veltrix
