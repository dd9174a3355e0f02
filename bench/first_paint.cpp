// Measures from outside how long a program takes from exec until its first window shows contents.
//
// usage: first_paint COMMAND [ARGUMENT...]
//
// Prints "MILLISECONDS PSS_KIB": the time until the X server has drawn at least half of the first mapped
// top-level window, and the proportional share of memory of the process half a second after that, when
// start-up work that waits for the first paint is done as well. The program is then told to end. The same
// ruler serves for any program, because nothing has to be built into it. There must be no window manager on
// the display.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

template <typename T>
Reply<T> own(T* reply) {
  return Reply<T>(reply, &std::free);
}

[[noreturn]] void fail(const char* reason) {
  std::fprintf(stderr, "first_paint: %s\n", reason);
  std::exit(2);
}

struct Display {
  xcb_connection_t* connection = nullptr;
  xcb_window_t root = 0;
  std::uint8_t damageEvent = 0;
};

Display openDisplay() {
  Display display;
  display.connection = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(display.connection) != 0) {
    fail("no X server answers");
  }
  display.root = xcb_setup_roots_iterator(xcb_get_setup(display.connection)).data->root;
  const xcb_query_extension_reply_t* damage = xcb_get_extension_data(display.connection, &xcb_damage_id);
  if (damage == nullptr || damage->present == 0) {
    fail("the X server has no damage extension");
  }
  display.damageEvent = static_cast<std::uint8_t>(damage->first_event + XCB_DAMAGE_NOTIFY);
  own(xcb_damage_query_version_reply(display.connection, xcb_damage_query_version(display.connection, 1, 1),
                                     nullptr));
  const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(display.connection, display.root, XCB_CW_EVENT_MASK, &mask);
  xcb_flush(display.connection);
  return display;
}

// Waits until more than half of a window of a real size has been drawn.
void waitForFirstPaint(const Display& display) {
  constexpr unsigned kSmallestWindow = 100;
  while (auto event = own(xcb_wait_for_event(display.connection))) {
    const std::uint8_t type = event->response_type & 0x7FU;
    if (type == XCB_MAP_NOTIFY) {
      const auto* map = reinterpret_cast<const xcb_map_notify_event_t*>(event.get());
      xcb_damage_create(display.connection, xcb_generate_id(display.connection), map->window,
                        XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
      xcb_flush(display.connection);
    } else if (type == display.damageEvent) {
      const auto* damage = reinterpret_cast<const xcb_damage_notify_event_t*>(event.get());
      const unsigned whole = unsigned{damage->geometry.width} * damage->geometry.height;
      const unsigned drawn = unsigned{damage->area.width} * damage->area.height;
      if (damage->geometry.width >= kSmallestWindow && drawn * 2 > whole) {
        return;
      }
    }
  }
  fail("the X server went away");
}

long pssKib(pid_t pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/smaps_rollup");
  std::string word;
  while (file >> word) {
    long value = 0;
    if (word == "Pss:" && file >> value) {
      return value;
    }
  }
  return -1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    fail("usage: first_paint COMMAND [ARGUMENT...]");
  }
  const Display display = openDisplay();
  const auto start = Clock::now();
  const pid_t child = fork();
  if (child == 0) {
    execvp(argv[1], argv + 1);
    _exit(127);
  }
  alarm(30);  // a program without a window would keep us for ever
  waitForFirstPaint(display);
  const std::chrono::duration<double, std::milli> elapsed = Clock::now() - start;
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  std::printf("%.2f %ld\n", elapsed.count(), pssKib(child));
  kill(child, SIGTERM);
  waitpid(child, nullptr, 0);
  xcb_disconnect(display.connection);
  return 0;
}
