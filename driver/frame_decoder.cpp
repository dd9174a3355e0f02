#include "driver/frame_decoder.h"

#include <algorithm>
#include <limits>

namespace veltrix {

namespace {

// Keeps to the range instead of wrapping around; no device reports as much.
void accumulate(std::int32_t& sum, std::int64_t value) noexcept {
  constexpr std::int64_t kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  sum = static_cast<std::int32_t>(std::clamp(sum + value, kLeast, kMost));
}

Microseconds timeOf(const input_event& event) noexcept {
  constexpr std::int64_t kLatestSecond = kNever.count() / 1'000'000 - 1;
  const auto seconds = std::clamp<std::int64_t>(event.input_event_sec, 0, kLatestSecond);
  const auto fraction = std::clamp<std::int64_t>(event.input_event_usec, 0, 999'999);
  return Microseconds{seconds * 1'000'000 + fraction};
}

bool isEmpty(const InputFrame& frame) noexcept {
  return frame.changeCount == 0 && frame.dx == 0 && frame.dy == 0 && frame.wheel == 0 && frame.hwheel == 0;
}

}  // namespace

void FrameDecoder::setHighResolution(bool wheel, bool hwheel) noexcept {
  fFineWheel = wheel;
  fFineHwheel = hwheel;
}

void FrameDecoder::start(std::uint16_t buttonsDown) noexcept {
  fFrame = InputFrame{};
  fButtons = buttonsDown;
  fGiven = fDropping = false;
}

FrameDecoder::Outcome FrameDecoder::add(const input_event& event) noexcept {
  if (fGiven)
    fFrame = InputFrame{};
  fGiven = false;
  if (event.type == EV_SYN) {
    if (event.code == SYN_DROPPED)
      fDropping = true;
    return event.code == SYN_REPORT ? endGroup(timeOf(event)) : Outcome::kNothing;
  }
  if (fDropping)
    return Outcome::kNothing;
  if (event.type == EV_KEY)
    return addButton(event);
  if (event.type == EV_REL)
    addMovement(event.code, event.value);
  return Outcome::kNothing;
}

// What came of a group before the loss is of no use: the state that the caller asks for has it all.
FrameDecoder::Outcome FrameDecoder::endGroup(Microseconds time) noexcept {
  if (fDropping) {
    start(fButtons);
    return Outcome::kLost;
  }
  if (isEmpty(fFrame))
    return Outcome::kNothing;
  fFrame.time = time;
  fGiven = true;
  return Outcome::kFrame;
}

// A group with more changes than a frame holds becomes several frames of the same time.
FrameDecoder::Outcome FrameDecoder::addButton(const input_event& event) noexcept {
  const unsigned button = unsigned{event.code} - BTN_MOUSE;
  if (event.code < BTN_MOUSE || button >= kMostButtons || event.value < 0 || event.value > 1)
    return Outcome::kNothing;
  const bool pressed = event.value == 1;
  const auto bit = static_cast<std::uint16_t>(1U << button);
  if (((fButtons & bit) != 0) == pressed)
    return Outcome::kNothing;
  fButtons ^= bit;
  fFrame.change[fFrame.changeCount++] = {static_cast<std::uint8_t>(button), pressed};
  if (fFrame.changeCount < kMostButtonChanges)
    return Outcome::kNothing;
  fFrame.time = timeOf(event);
  fGiven = true;
  return Outcome::kFrame;
}

void FrameDecoder::addMovement(std::uint16_t code, std::int32_t value) noexcept {
  constexpr std::int64_t kDetent = kHiResPerDetent;
  switch (code) {
    case REL_X:
      return accumulate(fFrame.dx, value);
    case REL_Y:
      return accumulate(fFrame.dy, value);
    case REL_WHEEL:
      return accumulate(fFrame.wheel, fFineWheel ? 0 : value * kDetent);
    case REL_HWHEEL:
      return accumulate(fFrame.hwheel, fFineHwheel ? 0 : value * kDetent);
    case REL_WHEEL_HI_RES:
      return accumulate(fFrame.wheel, fFineWheel ? value : 0);
    case REL_HWHEEL_HI_RES:
      return accumulate(fFrame.hwheel, fFineHwheel ? value : 0);
    default:
      return;
  }
}

}  // namespace veltrix
