#include "tests/helper/typing/fake_compositor.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <wayland-server.h>

#include <algorithm>
#include <utility>

#include "util/file_descriptor.h"

namespace veltrix::testing {
namespace {

int listenAt(const std::string& path) {
  FileDescriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  EXPECT_EQ(bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0) << path;
  EXPECT_EQ(listen(listener.get(), 1), 0);
  return listener.release();
}

void forget(std::vector<wl_resource*>& resources, wl_resource* gone) {
  resources.erase(std::remove(resources.begin(), resources.end(), gone), resources.end());
}

void destroy(wl_client* /*client*/, wl_resource* resource) {
  wl_resource_destroy(resource);
}

}  // namespace

struct FakeCompositor::Requests {
  static FakeCompositor* self(wl_resource* resource) {
    return static_cast<FakeCompositor*>(wl_resource_get_user_data(resource));
  }

  static constexpr struct wl_keyboard_interface kKeyboard = {destroy};
  static constexpr struct wl_seat_interface kSeat = {
      [](wl_client*, wl_resource*, std::uint32_t) {},
      [](wl_client* client, wl_resource* seat, std::uint32_t id) { self(seat)->addKeyboard(client, id); },
      [](wl_client*, wl_resource*, std::uint32_t) {}, destroy};
};

FakeCompositor::FakeCompositor(const std::string& path, std::string keymap)
    : fDisplay(wl_display_create()), fKeymap(std::move(keymap)), fHasKeyboard(!fKeymap.empty()) {
  EXPECT_EQ(wl_display_add_socket_fd(fDisplay, listenAt(path)), 0);
  wl_global_create(fDisplay, &wl_seat_interface, 1, this,
                   [](wl_client* client, void* data, std::uint32_t /*version*/, std::uint32_t id) {
                     static_cast<FakeCompositor*>(data)->addSeat(client, id);
                   });
}

FakeCompositor::~FakeCompositor() {
  wl_display_destroy_clients(fDisplay);
  wl_display_destroy(fDisplay);
}

void FakeCompositor::dispatch() {
  wl_event_loop_dispatch(wl_display_get_event_loop(fDisplay), 0);
  wl_display_flush_clients(fDisplay);
}

void FakeCompositor::setKeymap(std::string keymap) {
  fKeymap = std::move(keymap);
  for (auto* keyboard : fKeyboards) {
    sendKeymap(keyboard);
  }
}

void FakeCompositor::setHasKeyboard(bool has) {
  fHasKeyboard = has;
  for (auto* seat : fSeats) {
    wl_seat_send_capabilities(seat, has ? WL_SEAT_CAPABILITY_KEYBOARD : 0);
  }
}

void FakeCompositor::addSeat(wl_client* client, std::uint32_t id) {
  auto* seat = wl_resource_create(client, &wl_seat_interface, 1, id);
  wl_resource_set_implementation(seat, &Requests::kSeat, this,
                                 [](wl_resource* gone) { forget(Requests::self(gone)->fSeats, gone); });
  fSeats.push_back(seat);
  wl_seat_send_capabilities(seat, fHasKeyboard ? WL_SEAT_CAPABILITY_KEYBOARD : 0);
}

void FakeCompositor::addKeyboard(wl_client* client, std::uint32_t id) {
  auto* keyboard = wl_resource_create(client, &wl_keyboard_interface, 1, id);
  wl_resource_set_implementation(keyboard, &Requests::kKeyboard, this,
                                 [](wl_resource* gone) { forget(Requests::self(gone)->fKeyboards, gone); });
  fKeyboards.push_back(keyboard);
  sendKeymap(keyboard);
}

void FakeCompositor::sendKeymap(wl_resource* keyboard) const {
  const FileDescriptor file(memfd_create("keymap", MFD_CLOEXEC));
  const std::size_t size = fKeymap.size() + 1;
  EXPECT_EQ(write(file.get(), fKeymap.c_str(), size), static_cast<ssize_t>(size));
  wl_keyboard_send_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.get(),
                          static_cast<std::uint32_t>(size));
}

}  // namespace veltrix::testing
