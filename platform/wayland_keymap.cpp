#include <poll.h>

#include <chrono>

#include "platform/keymap_sources.h"
#include "platform/wayland_keyboard.h"

namespace veltrix::xkb {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kPatience{250};

bool waitForInput(int descriptor, Clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
  pollfd waiting{descriptor, POLLIN, 0};
  return left > 0 && poll(&waiting, 1, static_cast<int>(left)) > 0;
}

}  // namespace

FoundKeymap keymapOfWaylandSeat(xkb_context* context, const std::string& display) {
  const auto keyboard = WaylandKeyboard::connect(context, display, nullptr);
  if (!keyboard) {
    return {};
  }
  const auto deadline = Clock::now() + kPatience;
  while (!keyboard->keymap() && !keyboard->isSettled() && waitForInput(keyboard->descriptor(), deadline) &&
         keyboard->dispatch()) {
  }
  return {std::move(keyboard->keymap()), 0};
}

}  // namespace veltrix::xkb
