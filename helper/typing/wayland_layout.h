#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/event_loop.h"
#include "platform/keymap_sources.h"

namespace veltrix {

namespace xkb {
class WaylandKeyboard;
}

// The keymap of a compositor's keyboard, kept up to date from the loop. Compositors tell the group to nobody
// without a window; a GroupSource may know it.
class WaylandLayout {
 public:
  // `changed` is called from the loop, when the connection is lost too.
  WaylandLayout(xkb_context* context, std::function<void()> changed);
  ~WaylandLayout();
  WaylandLayout(const WaylandLayout&) = delete;
  WaylandLayout& operator=(const WaylandLayout&) = delete;

  // False when there is no such compositor. The loop must outlive the object.
  bool connect(sd_event* loop, const std::string& display);
  bool isConnected() const { return fKeyboard != nullptr; }

  // For the loop.
  void serve();

  // Null without a connection, and until the compositor has told it.
  xkb_keymap* keymap() const;

 private:
  xkb_context* fContext;
  std::function<void()> fChanged;
  std::unique_ptr<xkb::WaylandKeyboard> fKeyboard;
  EventSourceHandle fSource;
};

}  // namespace veltrix
