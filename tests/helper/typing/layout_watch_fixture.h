#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>

#include "helper/typing/layout_watch.h"
#include "platform/event_loop.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::testing {

// A loop for a watch of the layout. Greek is what the system's names say.
class LayoutWatchTest : public ::testing::Test {
 protected:
  KeyboardSources sources(std::string xDisplay, std::string waylandDisplay) const {
    return {std::move(xDisplay), std::move(waylandDisplay), LayoutNames{"", "gr", "", ""},
            fFolder / "keyboard"};
  }

  // Runs the loop until the layout types the character with one key; false when it never does.
  bool untilTyped(
      LayoutWatch& watch, char32_t character, std::uint16_t code,
      const std::function<void()>& meanwhile = [] {}) {
    return untilTrue(
        [&] {
          const auto* keyboard = watch.current();
          const auto keys =
              keyboard != nullptr ? keyboard->keysForCharacter(character) : std::vector<KeyPress>();
          return keys.size() == 1 && keys.front().code == code;
        },
        meanwhile);
  }

  bool untilTrue(
      const std::function<bool()>& condition, const std::function<void()>& meanwhile = [] {}) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
      if (std::chrono::steady_clock::now() > deadline) {
        return false;
      }
      meanwhile();
      constexpr std::uint64_t kTurn = 5000;  // µs
      sd_event_run(fLoop.get(), kTurn);
    }
    return true;
  }

  TemporaryFolder fFolder;
  EventLoopHandle fLoop = makeEventLoop();
};

}  // namespace veltrix::testing
