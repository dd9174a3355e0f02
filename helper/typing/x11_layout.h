#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/event_loop.h"
#include "platform/keymap_sources.h"

namespace veltrix {

struct XConnectionReleaser {
  void operator()(xcb_connection_t* connection) const;
};

// The keymap of an X server and the group in effect, kept up to date from the loop.
class X11Layout {
 public:
  // `changed` is called from the loop, when the connection is lost too.
  X11Layout(xkb_context* context, std::function<void()> changed);
  ~X11Layout();
  X11Layout(const X11Layout&) = delete;
  X11Layout& operator=(const X11Layout&) = delete;

  // False when there is no such server. The loop must outlive the object.
  bool connect(sd_event* loop, const std::string& display);
  bool isConnected() const { return fConnection != nullptr; }

  // Handles what the server has told so far; for the loop.
  void serve();
  // The same, for who cannot wait for the loop. A change that the server has told of is followed up, which
  // takes as long as this at most when the server has no time.
  void settle(std::chrono::milliseconds limit);

  // Empty without a connection.
  const xkb::FoundKeymap& found() const { return fFound; }

 private:
  bool takeEvents(xcb_generic_event_t* (*poll)(xcb_connection_t*));
  void take(const xcb_generic_event_t& event);
  bool takeAnswer();
  void askWhetherServerIsFree();
  void fetch();
  void disconnect();

  xkb_context* fContext;
  std::function<void()> fChanged;
  std::unique_ptr<xcb_connection_t, XConnectionReleaser> fConnection;
  EventSourceHandle fSource;
  std::uint8_t fFirstEvent = 0;
  std::optional<unsigned> fQuestion;  // the number of the request
  bool fIsStale = false;
  xkb::FoundKeymap fFound;
};

}  // namespace veltrix
