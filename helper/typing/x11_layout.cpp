#include "helper/typing/x11_layout.h"

#include <poll.h>
#include <sys/epoll.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include <cstdlib>
#include <utility>

// The header names fields by a word that C++ keeps for itself.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit

namespace veltrix {
namespace {

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

constexpr std::uint16_t kKeymapEvents =
    XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
constexpr std::uint16_t kMapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                    XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_EXPLICIT_COMPONENTS |
                                    XCB_XKB_MAP_PART_KEY_ACTIONS | XCB_XKB_MAP_PART_VIRTUAL_MODS |
                                    XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;

void selectEvents(xcb_connection_t* connection) {
  xcb_xkb_select_events_details_t details{};
  details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES | XCB_XKB_NKN_DETAIL_DEVICE_ID;
  details.newKeyboardDetails = details.affectNewKeyboard;
  details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
  details.stateDetails = details.affectState;
  xcb_xkb_select_events_aux(connection, XCB_XKB_ID_USE_CORE_KBD,
                            kKeymapEvents | XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, kMapParts, kMapParts,
                            &details);
}

int serveLayout(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* layout) {
  static_cast<X11Layout*>(layout)->serve();
  return 0;
}

}  // namespace

void XConnectionReleaser::operator()(xcb_connection_t* connection) const {
  xcb_disconnect(connection);
}

X11Layout::X11Layout(xkb_context* context, std::function<void()> changed)
    : fContext(context), fChanged(std::move(changed)) {}
X11Layout::~X11Layout() = default;

bool X11Layout::connect(sd_event* loop, const std::string& display) {
  fConnection.reset(xcb_connect(display.c_str(), nullptr));
  const auto firstEvent = xcb_connection_has_error(fConnection.get()) == 0
                              ? xkb::prepareForKeymaps(fConnection.get())
                              : std::nullopt;
  sd_event_source* source = nullptr;
  if (!firstEvent || sd_event_add_io(loop, &source, xcb_get_file_descriptor(fConnection.get()), EPOLLIN,
                                     serveLayout, this) < 0) {
    fConnection.reset();
    return false;
  }
  fSource.reset(source);
  fFirstEvent = *firstEvent;
  selectEvents(fConnection.get());
  fetch();
  serve();
  return isConnected();
}

void X11Layout::serve() {
  // Looking for an answer may read events, of which the descriptor then tells nobody.
  while (fConnection &&
         (takeEvents(xcb_poll_for_event) || takeAnswer() || takeEvents(xcb_poll_for_queued_event))) {
  }
  if (fConnection && xcb_connection_has_error(fConnection.get()) != 0) {
    disconnect();
  }
}

void X11Layout::settle(std::chrono::milliseconds limit) {
  serve();
  const auto end = std::chrono::steady_clock::now() + limit;
  for (auto left = limit; fConnection && fQuestion && left.count() > 0;
       left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now())) {
    pollfd answer{xcb_get_file_descriptor(fConnection.get()), POLLIN, 0};
    ::poll(&answer, 1, static_cast<int>(left.count()));
    serve();
  }
}

// False when there was none.
bool X11Layout::takeEvents(xcb_generic_event_t* (*poll)(xcb_connection_t*)) {
  bool any = false;
  while (const Reply<xcb_generic_event_t> event{poll(fConnection.get()), &std::free}) {
    any = true;
    take(*event);
  }
  if (fIsStale && !fQuestion) {
    askWhetherServerIsFree();
  }
  return any;
}

void X11Layout::take(const xcb_generic_event_t& event) {
  constexpr std::uint8_t kSentByClient = 0x80;
  if ((event.response_type & ~kSentByClient) != fFirstEvent) {
    return;
  }
  // All events of the extension have one number; what they have in common comes first.
  const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
  if (state.xkbType == XCB_XKB_STATE_NOTIFY) {
    if (fFound.group != state.group) {
      fFound.group = state.group;
      fChanged();
    }
  } else {
    fIsStale = true;
  }
}

// A program may keep the server to itself for a while, and whoever asks it something then waits as long. So
// the keymap, which can only be waited for, is fetched when an answer that need not be waited for has come.
void X11Layout::askWhetherServerIsFree() {
  fQuestion = xcb_get_input_focus(fConnection.get()).sequence;
  xcb_flush(fConnection.get());
}

// False when it has not come.
bool X11Layout::takeAnswer() {
  void* answer = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (!fQuestion || xcb_poll_for_reply(fConnection.get(), *fQuestion, &answer, &error) == 0) {
    return false;
  }
  std::free(answer);
  std::free(error);
  fQuestion.reset();
  fetch();
  return true;
}

void X11Layout::fetch() {
  fIsStale = false;
  auto found = xkb::keymapOfXConnection(fContext, fConnection.get());
  if (found.keymap) {
    fFound = std::move(found);
    fChanged();
  }
}

void X11Layout::disconnect() {
  fSource.reset();
  fConnection.reset();
  fQuestion.reset();
  fIsStale = false;
  fFound = {};
  fChanged();
}

}  // namespace veltrix
