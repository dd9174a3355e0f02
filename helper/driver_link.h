#pragma once

#include <chrono>
#include <span>
#include <string>
#include <vector>

#include "helper/driver_orders.h"
#include "helper/driver_report.h"
#include "helper/reconnect_delay.h"
#include "helper/seat_watch.h"
#include "helper/typing/key_sender.h"
#include "platform/event_loop.h"
#include "util/file_descriptor.h"
#include "util/result.h"

struct inotify_event;

namespace veltrix {

// What the driver has to say. Each may send nothing back by itself, but may call the link.
class DriverListener {
 public:
  virtual ~DriverListener() = default;
  virtual void driverReportChanged(const DriverReport& report) = 0;
  // A button of a trackball, of those that the helper carries out and, while it is monitored, of all others.
  virtual void driverButton(const ButtonPacket& packet) = 0;
  virtual void driverTyped(const KeysTypedPacket& packet) = 0;
  // The lamps of its keyboard have changed; all are out at the start of a connection.
  virtual void driverLamps(const LampsPacket& packet) = 0;
};

// The helper's end of the connection to the driver: keeps it, tells the driver what holds for each connected
// trackball, and hands on what comes back. Connects again by itself, after a wait that grows, at once when
// the driver's socket appears or somebody else comes to the screen. Never blocks; all calls from the loop's
// thread.
class DriverLink final : public KeySender {
 public:
  // The loop and the listener must outlive the link.
  DriverLink(sd_event* loop, std::string socketPath, DriverListener& listener);
  ~DriverLink() override;
  DriverLink(const DriverLink&) = delete;
  DriverLink& operator=(const DriverLink&) = delete;

  // Makes the first attempt. An error only when the loop does not serve.
  Status start();

  void setDevices(const std::vector<ConnectedDevice>& devices);
  // Whether every button is to be told.
  void setMonitored(bool monitored);

  bool typeKeys(const TypeKeysPacket& packet) override;
  bool stopTyping() override;
  // The end shows in the next turn of the loop; the link then connects anew.
  void hangUp() override;

  const DriverReport& report() const { return fReport; }

  // For the loop: something has arrived; a deadline has passed; something has happened where the socket is.
  void readSome();
  void timePassed();
  void socketFolderChanged(const inotify_event& event);
  // There is a reason to try at once.
  void tryAgain();

 private:
  using Clock = std::chrono::steady_clock;

  Status connectOnce();
  void connect();
  void watchSocketFolder();
  void disconnect(DriverState why, int error = 0);
  bool takeMessage(std::span<const std::byte> message);
  bool takeStatus(std::span<const std::byte> message);
  bool send(std::span<const std::byte> packet) const;
  bool sendOrHangUp(std::span<const std::byte> packet);
  void tellOrders();
  void setTimer();
  void announce();

  sd_event* fLoop;
  std::string fSocketPath;
  DriverListener& fListener;
  DriverOrders fOrders;
  DriverReport fReport;
  DriverReport fAnnounced;
  ReconnectDelay fDelay;
  Clock::time_point fNextAttempt = Clock::time_point::max();
  Clock::time_point fConnectedAt{};
  bool fMonitored = false;
  FileDescriptor fSocket;
  EventSourceHandle fReading;
  EventSourceHandle fTimer;
  EventSourceHandle fFolderWatch;
  SeatWatch fSeatWatch;
};

}  // namespace veltrix
