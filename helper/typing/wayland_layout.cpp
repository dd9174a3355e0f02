#include "helper/typing/wayland_layout.h"

#include <sys/epoll.h>

#include <utility>

#include "platform/wayland_keyboard.h"

namespace veltrix {
namespace {

int serveLayout(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* layout) {
  static_cast<WaylandLayout*>(layout)->serve();
  return 0;
}

}  // namespace

WaylandLayout::WaylandLayout(xkb_context* context, std::function<void()> changed)
    : fContext(context), fChanged(std::move(changed)) {}
WaylandLayout::~WaylandLayout() = default;

bool WaylandLayout::connect(sd_event* loop, const std::string& display) {
  fKeyboard = xkb::WaylandKeyboard::connect(fContext, display, fChanged);
  sd_event_source* source = nullptr;
  if (fKeyboard && sd_event_add_io(loop, &source, fKeyboard->descriptor(), EPOLLIN, serveLayout, this) < 0) {
    fKeyboard.reset();
  }
  fSource.reset(source);
  return isConnected();
}

void WaylandLayout::serve() {
  if (fKeyboard && !fKeyboard->dispatch()) {
    fSource.reset();
    fKeyboard.reset();
    fChanged();
  }
}

xkb_keymap* WaylandLayout::keymap() const {
  return fKeyboard ? fKeyboard->keymap().get() : nullptr;
}

}  // namespace veltrix
