#pragma once

#include <cstdint>
#include <type_traits>

namespace veltrix {

// How it went with one dialog that came to the front.
enum class JumpOutcome : std::uint32_t {
  kMoved = 1,      // the pointer is in the middle of the default button now
  kInsideAlready,  // the pointer was on it
  kButtonHeld,     // a button of a mouse was held down: nothing was moved
  kNoButton,       // no default button was found in time
  kOutOfWindow,    // where the program says that the button is, the window with the keyboard is not
};

inline constexpr std::uint32_t kJumpMessageReady = 1;   // it listens from now on
inline constexpr std::uint32_t kJumpMessageDialog = 2;  // it is done with a dialog

// What veltrix-jump writes to the helper that started it; integers in the byte order of the machine.
struct JumpMessage {
  std::uint32_t kind;     // kJumpMessageReady or kJumpMessageDialog
  std::uint32_t outcome;  // a JumpOutcome, 0 with kJumpMessageReady
};

static_assert(sizeof(JumpMessage) == 8);
static_assert(std::is_trivially_copyable_v<JumpMessage>);

}  // namespace veltrix
