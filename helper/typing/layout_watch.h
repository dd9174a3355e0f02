#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "helper/reconnect_delay.h"
#include "helper/typing/group_source.h"
#include "helper/typing/keyboard_model.h"
#include "helper/typing/wayland_layout.h"
#include "helper/typing/x11_layout.h"
#include "platform/event_loop.h"
#include "platform/keyboard_layout.h"

namespace veltrix {

// Knows the layout of the moment: that of the Wayland compositor, with the group if somebody tells it, else
// of the X server with its group, else the one by the system's names. A display that is not there, or goes
// away, is tried again when somebody wants the layout. Nothing waits for a compositor; until it has told its
// keymap the system's counts.
class LayoutWatch {
 public:
  // Connects at once. The loop must outlive the object. Without `groups` the first group of a compositor's
  // keymap counts.
  LayoutWatch(sd_event* loop, KeyboardSources sources = KeyboardSources::ofSystem(),
              std::unique_ptr<GroupSource> groups = nullptr);
  LayoutWatch(const LayoutWatch&) = delete;
  LayoutWatch& operator=(const LayoutWatch&) = delete;

  // The lamps of the keyboard from now on, as KeyboardModel::setLamps() takes them.
  void setLamps(std::uint16_t lit) { fLamps = lit; }

  // Made when the layout has changed since the last call; valid until the next one. Null when there is no
  // keyboard data at all.
  const KeyboardModel* current();

 private:
  void connect();
  xkb_layout_index_t groupOfCompositor() const;
  xkb::FoundKeymap keymapOfNow() const;
  std::uint64_t now() const;

  sd_event* fLoop;
  KeyboardSources fSources;
  xkb::Context fContext;
  bool fIsStale = true;
  WaylandLayout fWayland;
  X11Layout fX11;
  std::unique_ptr<GroupSource> fGroups;
  xkb_layout_index_t fGroup = 0;  // of the compositor's keymap
  ReconnectDelay fDelay;
  std::uint64_t fNextAttempt = 0;  // of the loop's monotonic clock, in microseconds
  std::uint16_t fLamps = 0;
  std::optional<KeyboardModel> fModel;
};

}  // namespace veltrix
