#pragma once

#include <linux/input.h>

#include <cstdint>

#include "driver/engine/engine_types.h"

namespace veltrix {

// Puts the events of a trackball together to frames. What cannot be put into a frame is left out: other
// codes, repeats, presses of what is down.
class FrameDecoder {
 public:
  enum class Outcome {
    kNothing,  // goes on
    kFrame,    // frame() is complete; valid until the next event
    kLost,     // the kernel has lost events: the buttons are to be asked for and given to start()
  };

  // How the trackball reports its wheels. High resolution is then taken, and the whole detents that the
  // kernel reports beside it are not counted again.
  void setHighResolution(bool wheel, bool hwheel) noexcept;

  // Starts anew with these buttons down, bit n for button n.
  void start(std::uint16_t buttonsDown) noexcept;

  Outcome add(const input_event& event) noexcept;
  const InputFrame& frame() const noexcept { return fFrame; }
  std::uint16_t buttonsDown() const noexcept { return fButtons; }

 private:
  Outcome endGroup(Microseconds time) noexcept;
  Outcome addButton(const input_event& event) noexcept;
  void addMovement(std::uint16_t code, std::int32_t value) noexcept;

  InputFrame fFrame;
  std::uint16_t fButtons = 0;
  bool fFineWheel = false;
  bool fFineHwheel = false;
  bool fGiven = false;     // fFrame has been returned
  bool fDropping = false;  // until the group ends
};

}  // namespace veltrix
