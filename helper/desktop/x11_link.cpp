#include "helper/desktop/x11_link.h"

#include <sys/eventfd.h>
#include <unistd.h>
#include <xcb/xcbext.h>

#include <cerrno>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "util/file_descriptor.h"

namespace veltrix {

// What the loop shares with a thread that connects; whoever comes last ends it.
struct X11Link::Opening {
  std::mutex mutex;
  X11Connection connection;
  int screen = 0;
  FileDescriptor done;
};

namespace {

int openingEnded(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* link) {
  static_cast<X11Link*>(link)->connected();
  return 0;
}

int serverReadable(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* link) {
  static_cast<X11Link*>(link)->readSome();
  return 0;
}

int deadlinePassed(sd_event_source* /*source*/, std::uint64_t /*now*/, void* link) {
  static_cast<X11Link*>(link)->timePassed();
  return 0;
}

xcb_window_t rootOf(xcb_connection_t* connection, int screen) {
  auto at = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; at.rem > 1 && screen > 0; --screen) {
    xcb_screen_next(&at);
  }
  return at.rem > 0 ? at.data->root : xcb_window_t{XCB_WINDOW_NONE};
}

}  // namespace

X11Link::X11Link(sd_event* loop, std::string display, std::chrono::milliseconds limit, Failed failed)
    : fLoop(loop), fDisplay(std::move(display)), fLimit(limit), fFailed(std::move(failed)) {}

X11Link::~X11Link() = default;

void X11Link::open(std::function<void()> opened) {
  close();
  auto opening = std::make_shared<Opening>();
  opening->done.reset(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  sd_event_source* reading = nullptr;
  const int result = sd_event_add_io(fLoop, &reading, opening->done.get(), EPOLLIN, openingEnded, this);
  fReading.reset(reading);
  if (result < 0 || !startDeadline()) {
    fail({EIO, "cannot watch the connection to the X server", {}});
    return;
  }
  fOpened = std::move(opened);
  fOpening = opening;
  const auto connect = [opening, display = fDisplay] {
    int screen = 0;
    X11Connection connection(xcb_connect(display.empty() ? nullptr : display.c_str(), &screen));
    const std::lock_guard lock(opening->mutex);
    opening->connection = std::move(connection);
    opening->screen = screen;
    eventfd_write(opening->done.get(), 1);
  };
  try {
    std::thread(connect).detach();
  } catch (const std::system_error&) {
    fail({EAGAIN, "cannot start a thread that connects to the X server", {}});
  }
}

void X11Link::close() {
  fReading.reset();
  fDeadline.reset();
  fOpening.reset();
  fOpened = nullptr;
  fConnection.reset();
  fRequests.clear();
  fReplies.clear();
  fAnswered = nullptr;
}

void X11Link::connected() {
  const auto opening = std::exchange(fOpening, nullptr);
  const auto opened = std::exchange(fOpened, nullptr);
  fReading.reset();
  fDeadline.reset();
  {
    const std::lock_guard lock(opening->mutex);
    fConnection = std::move(opening->connection);
  }
  if (xcb_connection_has_error(fConnection.get()) != 0) {
    fail({ECONNREFUSED, "cannot connect to the X server", {}});
    return;
  }
  fRoot = rootOf(fConnection.get(), opening->screen);
  sd_event_source* reading = nullptr;
  const int result = sd_event_add_io(fLoop, &reading, xcb_get_file_descriptor(fConnection.get()), EPOLLIN,
                                     serverReadable, this);
  fReading.reset(reading);
  if (result < 0 || fRoot == XCB_WINDOW_NONE) {
    fail({EIO, "cannot use the X server", {}});
    return;
  }
  opened();
}

void X11Link::await(std::vector<unsigned> requests, Answered answered) {
  fRequests = std::move(requests);
  fReplies.clear();
  fAnswered = std::move(answered);
  if (!startDeadline()) {
    fail({EIO, "cannot set a deadline", {}});
    return;
  }
  flush();
  // Sending may have taken in the replies, and nothing would be left to read then.
  readSome();
}

void X11Link::flush() {
  xcb_flush(fConnection.get());
}

bool X11Link::collect() {
  while (fReplies.size() < fRequests.size()) {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (xcb_poll_for_reply(fConnection.get(), fRequests[fReplies.size()], &reply, &error) == 0) {
      return false;
    }
    std::free(error);
    fReplies.emplace_back(reply);
  }
  return true;
}

void X11Link::readSome() {
  // No event was asked for, but looking for one is what reads from the server.
  while (const X11Reply event{xcb_poll_for_event(fConnection.get())}) {
  }
  const bool complete = collect();
  if (xcb_connection_has_error(fConnection.get()) != 0) {
    fail({ECONNRESET, "the X server closed the connection", {}});
  } else if (complete && fAnswered) {
    fDeadline.reset();
    Replies replies = std::exchange(fReplies, {});
    fRequests.clear();
    std::exchange(fAnswered, nullptr)(replies);
  }
}

void X11Link::timePassed() {
  fail({ETIMEDOUT, "the X server does not answer", {}});
}

void X11Link::fail(const Error& error) {
  close();
  fFailed(error);
}

bool X11Link::startDeadline() {
  sd_event_source* deadline = nullptr;
  const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(fLimit).count();
  const int result = sd_event_add_time_relative(
      fLoop, &deadline, CLOCK_MONOTONIC, static_cast<std::uint64_t>(microseconds), 0, deadlinePassed, this);
  fDeadline.reset(deadline);
  return result >= 0;
}

}  // namespace veltrix
