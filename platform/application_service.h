#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/session_bus.h"
#include "util/result.h"

struct sd_bus_slot;

namespace veltrix {

// What a desktop gives a program that it starts on a person's behalf, so that a window of it may come to the
// front.
struct Activation {
  std::string token;      // XDG_ACTIVATION_TOKEN; empty when there is none
  std::string startupId;  // DESKTOP_STARTUP_ID; the same
};

// Takes both out of the environment, where children would inherit them.
Activation takeActivation();

enum class ApplicationInstance {
  kOnly,        // this process now answers to the name
  kHandedOver,  // another process has the name and has been asked to come to the front
  kUnknown,     // there is no bus, or the owner of the name does not answer
};

// Lets one process of a session be the application of a bus name, and passes later starts on to it
// (org.freedesktop.Application). The caller drives the connection. Nothing waits longer than two seconds.
class ApplicationService {
 public:
  // The address of a bus; empty is the session bus.
  explicit ApplicationService(std::string name, std::string busAddress = {});
  ~ApplicationService();
  ApplicationService(const ApplicationService&) = delete;
  ApplicationService& operator=(const ApplicationService&) = delete;

  // To be called once.
  ApplicationInstance start(const Activation& own);

  // Called from process() for each later start.
  void setActivateHandler(std::function<void(const Activation&)> handler) { fHandler = std::move(handler); }

  // Becomes readable when process() has work; -1 unless start() has returned kOnly.
  int descriptor() const;

  // Handles what has arrived, without waiting. False when the connection has ended; it stays so.
  bool process();

  // The connection, for other services under the same name; null where descriptor() is -1.
  sd_bus* bus() const { return fBus.get(); }

  void activate(const Activation& activation) const;  // called by the bus

 private:
  ApplicationInstance handOver(const Activation& own);

  std::string fName;
  std::string fBusAddress;
  std::function<void(const Activation&)> fHandler;
  BusHandle fBus;
  sd_bus_slot* fSlot = nullptr;
};

}  // namespace veltrix
