#include "helper/desktop/window_manager.h"

#include <xcb/dpms.h>

#include <cstring>
#include <string_view>

namespace veltrix {
namespace {

// More than a hand can ask for within the time-out of one.
constexpr std::size_t kMostWaiting = 16;
constexpr std::uint32_t kMostItems = 1024;

// The 32-bit items of a property; none when it is not there or of another kind.
std::vector<std::uint32_t> itemsOf(const X11Reply& reply) {
  const auto* const property = static_cast<const xcb_get_property_reply_t*>(reply.get());
  if (property == nullptr || property->format != 32) {
    return {};
  }
  const auto* const items = static_cast<const std::uint32_t*>(xcb_get_property_value(property));
  return {items, items + xcb_get_property_value_length(property) / 4};
}

std::uint32_t itemOf(const X11Reply& reply, std::uint32_t otherwise) {
  const auto items = itemsOf(reply);
  return items.empty() ? otherwise : items.front();
}

}  // namespace

WindowManager::WindowManager(sd_event* loop, std::string display, std::chrono::milliseconds limit)
    : fLink(loop, std::move(display), limit, [this](const Error& error) { fail(error); }) {}

void WindowManager::operate(const DisplayAttempt& attempt, Ended ended) {
  if (fWaiting.size() >= kMostWaiting) {
    ended(Error{0, "too much is asked of the window manager at once", {}});
    return;
  }
  fWaiting.emplace_back(attempt, std::move(ended));
  if (fWaiting.size() == 1) {
    begin();
  }
}

void WindowManager::begin() {
  if (!fLink.isOpen()) {
    fKnowsAtoms = false;
    fLink.open([this] { begin(); });
  } else if (fWaiting.front().first.operation == DisplayOperation::kTurnOffScreen) {
    askScreenPower();
  } else if (!fKnowsAtoms) {
    askAtoms();
  } else {
    askRoot();
  }
}

void WindowManager::askAtoms() {
  std::vector<unsigned> requests;
  requests.reserve(kX11AtomNames.size());
  for (const char* name : kX11AtomNames) {
    requests.push_back(
        xcb_intern_atom(fLink.connection(), 0, static_cast<std::uint16_t>(std::strlen(name)), name).sequence);
  }
  fLink.await(std::move(requests), [this](Replies& replies) {
    for (std::size_t i = 0; i < replies.size(); ++i) {
      const auto* const reply = static_cast<const xcb_intern_atom_reply_t*>(replies[i].get());
      fAtoms.set(i, reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE});
    }
    fKnowsAtoms = true;
    askRoot();
  });
}

unsigned WindowManager::ask(xcb_window_t window, X11Atom property) const {
  return xcb_get_property(fLink.connection(), 0, window, fAtoms[property], XCB_GET_PROPERTY_TYPE_ANY, 0,
                          kMostItems)
      .sequence;
}

void WindowManager::askRoot() {
  const xcb_window_t window = fLink.root();
  fLink.await({ask(window, X11Atom::kSupported), ask(window, X11Atom::kActiveWindow),
               ask(window, X11Atom::kCurrentDesktop), ask(window, X11Atom::kNumberOfDesktops),
               ask(window, X11Atom::kShowingDesktop)},
              [this](Replies& replies) {
                RootState root;
                root.supported = itemsOf(replies[0]);
                root.active = itemOf(replies[1], XCB_WINDOW_NONE);
                root.workspace = itemOf(replies[2], 0);
                root.workspaces = itemOf(replies[3], 1);
                root.showsDesktop = itemOf(replies[4], 0) != 0;
                if (root.active != XCB_WINDOW_NONE && concernsWindow(fWaiting.front().first.operation)) {
                  askWindow(root);
                } else {
                  request(root, {});
                }
              });
}

void WindowManager::askWindow(const RootState& root) {
  fLink.await({ask(root.active, X11Atom::kState), ask(root.active, X11Atom::kWindowType)},
              [this, root](Replies& replies) {
                request(root, {itemsOf(replies[0]), itemsOf(replies[1])});
              });
}

void WindowManager::request(const RootState& root, const WindowState& window) {
  const auto requests = requestsFor(fWaiting.front().first, fAtoms, root, window);
  if (!requests) {
    end(requests.error());
    return;
  }
  for (const WindowRequest& request : requests.value()) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = request.window != XCB_WINDOW_NONE ? request.window : fLink.root();
    event.type = request.type;
    std::memcpy(event.data.data32, request.data.data(), sizeof event.data.data32);
    char bytes[32] = {};
    static_assert(sizeof bytes == sizeof event);
    std::memcpy(bytes, &event, sizeof event);
    xcb_send_event(fLink.connection(), 0, fLink.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT, bytes);
  }
  fLink.flush();
  end(Done{});
}

// xcb looks for the extension by itself and waits for the answer; once this question has its answer, the same
// question of xcb's, sent before it, has one too.
void WindowManager::askScreenPower() {
  xcb_prefetch_extension_data(fLink.connection(), &xcb_dpms_id);
  constexpr std::string_view kName = "DPMS";
  fLink.await({xcb_query_extension(fLink.connection(), kName.size(), kName.data()).sequence},
              [this](Replies& replies) {
                const auto* const reply = static_cast<const xcb_query_extension_reply_t*>(replies[0].get());
                if (reply == nullptr || reply->present == 0) {
                  end(Error{0, "the X server cannot turn off its screens", {}});
                } else {
                  askScreenState();
                }
              });
}

void WindowManager::askScreenState() {
  fLink.await({xcb_dpms_capable(fLink.connection()).sequence, xcb_dpms_info(fLink.connection()).sequence},
              [this](Replies& replies) {
                const auto* const capable = static_cast<const xcb_dpms_capable_reply_t*>(replies[0].get());
                const auto* const info = static_cast<const xcb_dpms_info_reply_t*>(replies[1].get());
                if (capable == nullptr || capable->capable == 0 || info == nullptr) {
                  end(Error{0, "the screens cannot be turned off", {}});
                } else {
                  turnOffScreen(info->state != 0);
                }
              });
}

void WindowManager::turnOffScreen(bool isEnabled) {
  if (!isEnabled) {
    xcb_dpms_enable(fLink.connection());
  }
  const auto force = xcb_dpms_force_level_checked(fLink.connection(), XCB_DPMS_DPMS_MODE_OFF);
  const auto check = xcb_dpms_info(fLink.connection());
  fLink.await({force.sequence, check.sequence}, [this](Replies& replies) {
    const auto* const info = static_cast<const xcb_dpms_info_reply_t*>(replies[1].get());
    const bool isOff = info != nullptr && info->power_level == XCB_DPMS_DPMS_MODE_OFF;
    end(isOff ? Status(Done{}) : Error{0, "the X server did not turn off its screens", {}});
  });
}

void WindowManager::end(const Status& status) {
  const Ended ended = std::move(fWaiting.front().second);
  fWaiting.pop_front();
  if (!fWaiting.empty()) {
    begin();
  }
  ended(status);
}

void WindowManager::fail(const Error& error) {
  for (auto& [attempt, ended] : std::exchange(fWaiting, {})) {
    ended(error);
  }
}

}  // namespace veltrix
