// The driver with an X server in the place of the kernel: usage driver_on_display SOCKET [--print-keys].
//
// Everything is the real one but the devices: there is one trackball, whose buttons are pressed by words on
// standard input, and keys go to the server of DISPLAY as if its keyboard were used, whose lamps are those
// that the server lights. The words, one a line: "press N" and "release N" for the buttons of the trackball,
// "key" for a key of a keyboard that goes down. Prints "press NANOSECONDS" for a press, "key NANOSECONDS" for
// the first key after it, and "lamps BITS" when the lamps have changed.
// With --print-keys there need be no server: each key is printed as "output CODE 1" when it goes down and
// "output CODE 0" when it comes up.
#include <poll.h>
#include <sys/epoll.h>
#include <unistd.h>
#include <xcb/xtest.h>

// The header names fields by a word that C++ keeps for itself.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>

#include "driver/driver_core.h"
#include "driver/event_loop.h"
#include "driver/fixed_user.h"
#include "driver/link_server.h"
#include "tests/driver/driver_fakes.h"

namespace veltrix {
namespace {

constexpr std::uint8_t kKeycodeOffset = 8;  // of the server's keycodes to those of the kernel
constexpr std::uint16_t kLastKey = 247;

void printTime(const char* what) {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  std::printf("%s %lld\n", what, now.tv_sec * 1'000'000'000LL + now.tv_nsec);
  std::fflush(stdout);
}

class DisplaySink final : public EventSink {
 public:
  explicit DisplaySink(bool prints) : fDisplay(prints ? nullptr : xcb_connect(nullptr, nullptr)) {}
  ~DisplaySink() override {
    if (fDisplay != nullptr)
      xcb_disconnect(fDisplay);
  }
  DisplaySink(const DisplaySink&) = delete;
  DisplaySink& operator=(const DisplaySink&) = delete;

  bool works() const { return fDisplay == nullptr || xcb_connection_has_error(fDisplay) == 0; }
  int open() noexcept override { return 0; }
  void close() noexcept override {}
  bool isOpen() const noexcept override { return true; }
  int write(std::span<const OutputEvent> groups) noexcept override {
    for (const OutputEvent& event : groups) {
      if (event.type != EV_KEY || event.code > kLastKey)
        continue;
      type(event);
      if (std::exchange(fTellsKey, false))
        printTime("key");
    }
    if (fDisplay != nullptr)
      xcb_flush(fDisplay);
    return works() ? 0 : EIO;
  }
  void tellNextKey() { fTellsKey = true; }

 private:
  void type(const OutputEvent& event) {
    if (fDisplay == nullptr) {
      std::printf("output %d %d\n", event.code, event.value != 0 ? 1 : 0);
      std::fflush(stdout);
      return;
    }
    const std::uint8_t type = event.value != 0 ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
    const auto code = static_cast<std::uint8_t>(event.code + kKeycodeOffset);
    xcb_test_fake_input(fDisplay, type, code, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
  }

  xcb_connection_t* fDisplay;  // null for printing
  bool fTellsKey = false;
};

// The server numbers the lamps as keyboards do: Caps Lock, then Num Lock.
class DisplayLamps final : public PollHandler {
 public:
  explicit DisplayLamps(LampListener& listener)
      : fListener(listener), fDisplay(xcb_connect(nullptr, nullptr)) {}
  ~DisplayLamps() override { xcb_disconnect(fDisplay); }
  DisplayLamps(const DisplayLamps&) = delete;
  DisplayLamps& operator=(const DisplayLamps&) = delete;

  bool start(EventLoop& loop) {
    std::free(xcb_xkb_use_extension_reply(fDisplay, xcb_xkb_use_extension(fDisplay, 1, 0), nullptr));
    constexpr std::uint16_t kEvent = XCB_XKB_EVENT_TYPE_INDICATOR_STATE_NOTIFY;
    xcb_xkb_select_events(fDisplay, XCB_XKB_ID_USE_CORE_KBD, kEvent, 0, kEvent, 0, 0, nullptr);
    xcb_flush(fDisplay);
    return xcb_connection_has_error(fDisplay) == 0 &&
           loop.add(xcb_get_file_descriptor(fDisplay), EPOLLIN, *this).ok();
  }

 private:
  void ready(std::uint32_t /*events*/) noexcept override {
    while (xcb_generic_event_t* const event = xcb_poll_for_event(fDisplay)) {
      const auto& lamps = reinterpret_cast<const xcb_xkb_indicator_state_notify_event_t&>(*event);
      if (lamps.xkbType == XCB_XKB_INDICATOR_STATE_NOTIFY) {
        const auto lit = static_cast<std::uint16_t>(lamps.state & (kCapsLockLamp | kNumLockLamp));
        fListener.lampsChanged(lit);
        std::printf("lamps %d\n", lit);
        std::fflush(stdout);
      }
      std::free(event);
    }
  }

  LampListener& fListener;
  xcb_connection_t* fDisplay;
};

class Words final : public PollHandler {
 public:
  Words(FakeTrackballState& ball, DisplaySink& sink, FakeKeyPresses& keys, const EventLoop& loop)
      : fBall(ball), fSink(sink), fKeys(keys), fLoop(loop) {}

  bool ended() const { return fEnded; }
  void ready(std::uint32_t /*events*/) noexcept override {
    char buffer[256];
    const ssize_t size = ::read(STDIN_FILENO, buffer, sizeof buffer);
    fEnded = size <= 0;
    if (size > 0)
      fText.append(buffer, static_cast<std::size_t>(size));
    for (std::size_t end = fText.find('\n'); end != std::string::npos; end = fText.find('\n')) {
      take(fText.substr(0, end));
      fText.erase(0, end + 1);
    }
  }

 private:
  void take(const std::string& line) {
    fKeys.down = line == "key";
    const std::size_t space = line.find(' ');
    if (space == std::string::npos || fBall.listener == nullptr)
      return;
    unsigned button = 0;
    std::from_chars(line.data() + space + 1, line.data() + line.size(), button);
    const bool pressed = line.starts_with("press");
    if (pressed) {
      fSink.tellNextKey();
      printTime("press");
    }
    fBall.listener->frameCame(buttonFrame(fLoop.now(), static_cast<std::uint8_t>(button), pressed));
  }

  FakeTrackballState& fBall;
  DisplaySink& fSink;
  FakeKeyPresses& fKeys;
  const EventLoop& fLoop;
  std::string fText;
  bool fEnded = false;
};

int run(const std::string& socket, bool prints) {
  EventLoop loop;
  DisplaySink sink(prints);
  if (!loop.start() || !sink.works()) {
    std::fprintf(stderr, "driver_on_display: there is no X server to type into\n");
    return 1;
  }
  FakeModifiers modifiers;
  FakeKeyPresses keys;
  FakeTrackballState ball;
  DriverCore core(loop, sink, modifiers, keys);
  FixedUser user(getuid());
  LinkServer server(loop, user, core, {socket, "on a display"});
  core.setChannel(&server);
  core.attach(std::make_unique<FakeTrackball>(ball, kSomeTrackball));
  Words words(ball, sink, keys, loop);
  DisplayLamps lamps(core);
  if ((!prints && !lamps.start(loop)) || !server.start() || !loop.add(STDIN_FILENO, EPOLLIN, words))
    return 1;
  while (!words.ended() && loop.waitUntil(core.deadline())) {
    if (core.deadline() != kNever)
      core.expire(loop.now());
  }
  server.stop(DriverAnswer::kStopping);
  return 0;
}

}  // namespace
}  // namespace veltrix

int main(int argc, char** argv) {
  const bool prints = argc == 3 && std::string_view(argv[2]) == "--print-keys";
  return argc == 2 || prints ? veltrix::run(argv[1], prints) : 2;
}
