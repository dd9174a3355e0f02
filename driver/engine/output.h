#pragma once

#include <linux/input-event-codes.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace veltrix {

struct OutputEvent {
  std::uint16_t type;
  std::uint16_t code;
  std::int32_t value;

  friend bool operator==(const OutputEvent& a, const OutputEvent& b) = default;
};

// A button, chord or the wheel began or ended the command of its slot.
struct ButtonNotice {
  std::uint8_t slot;
  std::uint16_t command;
  bool pressed;
  bool forHelper;  // whether the helper carries the command out

  friend bool operator==(const ButtonNotice& a, const ButtonNotice& b) = default;
};

// Collects what one call of the engine gives: events in groups, each ended by SYN_REPORT, and notices. A
// group is written to the devices at once, keyboard before pointer. Made once and cleared for every call.
class Output {
 public:
  static constexpr std::size_t kMostEvents = 1024;
  static constexpr std::size_t kMostNotices = 128;

  void clear() noexcept { fEventCount = fNoticeCount = 0, fGroupBegan = fOverflowed = false; }

  // `code` is of a key or a button.
  void key(std::uint16_t code, bool down) noexcept { push({EV_KEY, code, down ? 1 : 0}); }

  // A REL_ code; nothing for 0.
  void relative(std::uint16_t code, std::int32_t value) noexcept {
    if (value != 0)
      push({EV_REL, code, value});
  }

  // Ends the group; nothing when it is empty.
  void sync() noexcept {
    if (fGroupBegan)
      push({EV_SYN, SYN_REPORT, 0});
    fGroupBegan = false;
  }

  void notice(const ButtonNotice& notice) noexcept {
    if (fNoticeCount == kMostNotices) {
      fOverflowed = true;
      return;
    }
    fNotice[fNoticeCount++] = notice;
  }

  std::span<const OutputEvent> events() const noexcept { return {fEvent.data(), fEventCount}; }
  std::span<const ButtonNotice> notices() const noexcept { return {fNotice.data(), fNoticeCount}; }

  // Whether something found no room and is lost. No call of the engine with valid arguments comes that far.
  bool overflowed() const noexcept { return fOverflowed; }

 private:
  void push(const OutputEvent& event) noexcept {
    if (fEventCount == kMostEvents) {
      fOverflowed = true;
      return;
    }
    fEvent[fEventCount++] = event;
    fGroupBegan = true;
  }

  std::array<OutputEvent, kMostEvents> fEvent;
  std::array<ButtonNotice, kMostNotices> fNotice;
  std::size_t fEventCount = 0;
  std::size_t fNoticeCount = 0;
  bool fGroupBegan = false;
  bool fOverflowed = false;
};

}  // namespace veltrix
