#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/event_wire.h"
#include "platform/loop_thread.h"
#include "platform/session_bus.h"
#include "platform/typed_events.h"

struct sd_bus_slot;

namespace veltrix {

// Takes one event. Returns 0, or a status that the sender gets as a failure; `reply` reaches senders that
// wait for one. Must not throw.
using EventHandler = std::function<std::int32_t(const IncomingEvent& event, EventReply* reply)>;

// Takes events on a connection that the caller drives, for as long as the receiver lives. The connection must
// outlive it. Events over the size limit never reach the handler.
class EventReceiver {
 public:
  static Result<std::unique_ptr<EventReceiver>> onBus(sd_bus* bus, EventHandler handler);
  ~EventReceiver();
  EventReceiver(const EventReceiver&) = delete;
  EventReceiver& operator=(const EventReceiver&) = delete;

  // Called by the bus: decodes, asks the handler, answers.
  int take(sd_bus_message* call);

 private:
  explicit EventReceiver(EventHandler handler) : fHandler(std::move(handler)) {}

  EventHandler fHandler;
  sd_bus_slot* fSlot = nullptr;
};

// Claims a bus name: true when this connection has it now, false when another process has it.
Result<bool> claimBusName(sd_bus* bus, const std::string& name);

// Takes the events of an application (under both of its names) on a thread of its own, on which the handler
// is called. Without a bus, and after the bus has gone, no event arrives. The end of the object stops the
// thread and waits for it; the handler is not called any more after that.
class EventReceiverThread {
 public:
  EventReceiverThread(std::string application, EventHandler handler, std::string busAddress = {});
  EventReceiverThread(const EventReceiverThread&) = delete;
  EventReceiverThread& operator=(const EventReceiverThread&) = delete;

 private:
  void run(sd_event* loop, const bool* stopped);

  std::string fApplication;
  EventHandler fHandler;
  std::string fBusAddress;
  LoopThread fThread;  // last, for it uses the others
};

}  // namespace veltrix
