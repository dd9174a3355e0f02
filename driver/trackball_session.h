#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "driver/engine/engine.h"
#include "driver/engine/output.h"
#include "driver/settings_table.h"
#include "driver/trackball.h"

namespace veltrix {

class TrackballSession;

// What the sessions of all trackballs share.
class SessionHost {
 public:
  virtual ~SessionHost() = default;
  virtual Microseconds now() const noexcept = 0;
  virtual std::uint8_t heldModifiers() const noexcept = 0;
  // Cleared; to be given to carryOut() before it is asked for again.
  virtual Output& output() noexcept = 0;
  // May end what the session does, when the events cannot be written.
  virtual void carryOut(const TrackballSession& session, const Output& output) noexcept = 0;
  virtual void conditionChanged(const TrackballSession& session) noexcept = 0;
};

// How one trackball stands to the driver.
//
//   condition    open  grabbed  goes on when
//   left alone    -      -      settings come
//   waiting      yes     -      a button changes: taken when all are up
//   busy         yes     -      its time has come, later each time, or it reports something
//   taken        yes    yes     events come and the engine's deadlines expire
//   failed        -      -      settings come, the same ones too
//   detached      -      -      never
//
// A button that is down when a trackball is taken would stay down for everybody else, who do not hear of its
// release any more; hence the waiting, which takes as long as it takes: the trackball works on as a mouse.
class TrackballSession final : private TrackballListener {
 public:
  // The host must outlive the session.
  TrackballSession(SessionHost& host, std::unique_ptr<Trackball> trackball, std::uint32_t number);
  ~TrackballSession() override;
  TrackballSession(const TrackballSession&) = delete;
  TrackballSession& operator=(const TrackballSession&) = delete;

  // From now on it works by these settings; when they say so, it is left alone.
  void apply(const TrackballSettings& settings) noexcept;
  // Releases everything and makes it an ordinary mouse.
  void leaveAlone() noexcept { finish(DeviceCondition::kLeftAlone, 0); }
  // The same; `error` is why it cannot be taken.
  void fail(int error) noexcept { finish(DeviceCondition::kFailed, error); }
  // The same, for good.
  void detach() noexcept { finish(DeviceCondition::kDetached, 0); }

  void modifiersChanged() noexcept;
  Microseconds deadline() const noexcept;
  void expire(Microseconds now) noexcept;

  DeviceAddress address() const noexcept { return fTrackball->address(); }
  std::uint32_t number() const noexcept { return fNumber; }
  DeviceCondition condition() const noexcept { return fCondition; }
  int error() const noexcept { return fError; }

 private:
  void frameCame(const InputFrame& frame) noexcept override;
  void eventsLost(std::uint16_t buttons) noexcept override;
  void readingFailed(int error) noexcept override;

  void take() noexcept;
  void takeGrabbed() noexcept;
  void postpone(int error) noexcept;
  void finish(DeviceCondition condition, int error) noexcept;
  void change(DeviceCondition condition, int error) noexcept;
  bool isTaken() const noexcept { return fCondition == DeviceCondition::kTaken; }
  Microseconds advanceTo(Microseconds time) noexcept;

  SessionHost& fHost;
  std::unique_ptr<Trackball> fTrackball;
  const std::uint32_t fNumber;
  DeviceCondition fCondition = DeviceCondition::kLeftAlone;
  int fError = 0;
  TrackballSettings fSettings{};
  Engine fEngine;
  Microseconds fLatest{};  // the last time that the engine was told
  Microseconds fRetry{};   // with kBusy
  Microseconds fPause{};   // before the next try
};

}  // namespace veltrix
