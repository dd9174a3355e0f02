#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/event_loop.h"
#include "util/result.h"

namespace veltrix {

struct X11Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using X11Connection = std::unique_ptr<xcb_connection_t, X11Disconnect>;

struct X11Free {
  void operator()(void* memory) const { std::free(memory); }
};
using X11Reply = std::unique_ptr<void, X11Free>;

// A connection to an X server that may hang. Connecting takes place on a thread, because xcb waits for the
// server's greeting; replies are taken when they are there and never waited for. One question at a time.
class X11Link {
 public:
  // In the order of the requests; null for one that failed.
  using Replies = std::vector<X11Reply>;
  using Answered = std::function<void(Replies&)>;
  using Failed = std::function<void(const Error&)>;

  // The loop must outlive the object. An empty display is that of DISPLAY. `failed` hears once of each
  // question that stays without an answer for `limit`, and of a lost connection; the link is closed then.
  X11Link(sd_event* loop, std::string display, std::chrono::milliseconds limit, Failed failed);
  ~X11Link();
  X11Link(const X11Link&) = delete;
  X11Link& operator=(const X11Link&) = delete;

  bool isOpen() const { return fConnection != nullptr; }
  // Begins to connect; `opened` comes later from the loop, or `failed`.
  void open(std::function<void()> opened);
  void close();

  // Only while it is open.
  xcb_connection_t* connection() const { return fConnection.get(); }
  xcb_window_t root() const { return fRoot; }

  // Sends what was asked, and hands on the replies to the requests of these numbers. A request without a
  // reply has to be a checked one with others behind it.
  void await(std::vector<unsigned> requests, Answered answered);
  // Sends what needs no answer.
  void flush();

  // For the loop.
  void connected();
  void readSome();
  void timePassed();

 private:
  struct Opening;
  void fail(const Error& error);
  bool startDeadline();
  bool collect();

  sd_event* fLoop;
  std::string fDisplay;
  std::chrono::milliseconds fLimit;
  Failed fFailed;
  std::shared_ptr<Opening> fOpening;
  std::function<void()> fOpened;
  X11Connection fConnection;
  xcb_window_t fRoot = 0;
  std::vector<unsigned> fRequests;
  Replies fReplies;
  Answered fAnswered;
  EventSourceHandle fReading;
  EventSourceHandle fDeadline;
};

}  // namespace veltrix
