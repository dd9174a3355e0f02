#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>

#include "util/result.h"

struct sd_bus;
struct sd_bus_slot;
struct sd_bus_message;

namespace veltrix {

// Asks applications to come to the front, by org.freedesktop.Application; the bus starts those that do not
// run.
class BusActivation {
 public:
  using Ended = std::function<void(const Status&)>;

  // The connection, which the caller's loop drives, must outlive the object; null for none.
  explicit BusActivation(sd_bus* bus) : fBus(bus) {}
  ~BusActivation();
  BusActivation(const BusActivation&) = delete;
  BusActivation& operator=(const BusActivation&) = delete;

  // `identifier` is that of a desktop entry, which is the application's name on the bus. An error with
  // ETIMEDOUT when the application may yet be coming.
  void activate(const std::string& identifier, Ended ended);

 private:
  struct Call {
    BusActivation* owner = nullptr;
    std::string name;
    sd_bus_slot* slot = nullptr;
    Ended ended;
    std::list<Call>::iterator place;
  };
  static int answered(sd_bus_message* answer, void* call, void* error);

  sd_bus* fBus;
  std::list<Call> fCalls;
};

}  // namespace veltrix
