#include "driver/trackball_session.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

namespace veltrix {

namespace {

// How long a trackball that another program has is left to it: doubled from the first to the last.
constexpr Microseconds kFirstPause = std::chrono::milliseconds(100);
constexpr Microseconds kLastPause = std::chrono::seconds(5);

}  // namespace

TrackballSession::TrackballSession(SessionHost& host, std::unique_ptr<Trackball> trackball,
                                   std::uint32_t number)
    : fHost(host),
      fTrackball(std::move(trackball)),
      fNumber(number),
      fEngine(deviceModelOf(fTrackball->address().product)) {}

TrackballSession::~TrackballSession() {
  fTrackball->close();
}

void TrackballSession::apply(const TrackballSettings& settings) noexcept {
  if (fCondition == DeviceCondition::kDetached)
    return;
  if (settings.record.driverEnabled == 0)
    return leaveAlone();
  const bool isOpen = fCondition != DeviceCondition::kLeftAlone && fCondition != DeviceCondition::kFailed;
  // What a held button does is not to end because the same is said again.
  if (isOpen && settings == fSettings)
    return;
  fSettings = settings;
  if (isTaken())
    return takeGrabbed();
  if (isOpen)
    return;
  fPause = kFirstPause;
  if (const int error = fTrackball->open(*this); error != 0)
    return readingFailed(error);
  take();
}

// It is open and not grabbed.
void TrackballSession::take() noexcept {
  std::uint16_t down = 0;
  if (const int error = fTrackball->buttons(&down); error != 0)
    return readingFailed(error);
  if (down != 0)
    return change(DeviceCondition::kWaiting, 0);
  if (const int error = fTrackball->grab(); error != 0)
    return error == EBUSY ? postpone(error) : readingFailed(error);
  // A button may have gone down in between.
  if (const int error = fTrackball->buttons(&down); error != 0)
    return readingFailed(error);
  if (down != 0) {
    fTrackball->ungrab();
    return change(DeviceCondition::kWaiting, 0);
  }
  change(DeviceCondition::kTaken, 0);
  takeGrabbed();
}

// Gives the settings to the engine.
void TrackballSession::takeGrabbed() noexcept {
  Output& output = fHost.output();
  fEngine.apply(fSettings.record, fSettings.scroll, advanceTo(fHost.now()), output);
  fHost.carryOut(*this, output);
}

void TrackballSession::postpone(int error) noexcept {
  fRetry = fHost.now() + fPause;
  fPause = std::min(2 * fPause, kLastPause);
  change(DeviceCondition::kBusy, error);
}

void TrackballSession::modifiersChanged() noexcept {
  if (isTaken())
    fEngine.modifiersChanged(fHost.heldModifiers());
}

Microseconds TrackballSession::deadline() const noexcept {
  if (isTaken())
    return fEngine.deadline();
  return fCondition == DeviceCondition::kBusy ? fRetry : kNever;
}

void TrackballSession::expire(Microseconds now) noexcept {
  if (deadline() > now)
    return;
  if (!isTaken())
    return take();
  Output& output = fHost.output();
  fEngine.expire(advanceTo(now), output);
  fHost.carryOut(*this, output);
}

void TrackballSession::frameCame(const InputFrame& frame) noexcept {
  if (fCondition == DeviceCondition::kBusy ||
      (fCondition == DeviceCondition::kWaiting && frame.changeCount > 0))
    return take();
  // What was due before the frame comes first, though the loop has not come to it yet.
  expire(frame.time);
  if (!isTaken())
    return;
  InputFrame timely = frame;
  timely.time = advanceTo(frame.time);
  Output& output = fHost.output();
  fEngine.process(timely, fHost.heldModifiers(), output);
  fHost.carryOut(*this, output);
}

void TrackballSession::eventsLost(std::uint16_t buttons) noexcept {
  if (!isTaken())
    return take();
  Output& output = fHost.output();
  fEngine.resynchronize(buttons, advanceTo(fHost.now()), fHost.heldModifiers(), output);
  fHost.carryOut(*this, output);
}

void TrackballSession::readingFailed(int error) noexcept {
  if (error == ENODEV)
    return detach();
  fail(error);
}

// Released before others hear of it again, so that nobody sees one button pressed twice. When that cannot be
// written the host has the session fail, which comes here once more.
void TrackballSession::finish(DeviceCondition condition, int error) noexcept {
  if (fCondition == DeviceCondition::kDetached)
    return;
  if (isTaken()) {
    Output& output = fHost.output();
    fEngine.release(advanceTo(fHost.now()), output);
    fHost.carryOut(*this, output);
  }
  fTrackball->close();
  change(condition, error);
}

void TrackballSession::change(DeviceCondition condition, int error) noexcept {
  if (condition == fCondition && error == fError)
    return;
  fCondition = condition;
  fError = error;
  fHost.conditionChanged(*this);
}

// Stamps of events and of the loop do not keep to one order; the engine is told none that goes back.
Microseconds TrackballSession::advanceTo(Microseconds time) noexcept {
  fLatest = std::max(fLatest, time);
  return fLatest;
}

}  // namespace veltrix
