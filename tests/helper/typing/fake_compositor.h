#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct wl_client;
struct wl_display;
struct wl_resource;

namespace veltrix::testing {

// A Wayland compositor that has nothing but a seat with a keyboard. It works while dispatch() is called.
class FakeCompositor {
 public:
  // Listens at that path. An empty keymap is no keyboard.
  FakeCompositor(const std::string& path, std::string keymap);
  ~FakeCompositor();
  FakeCompositor(const FakeCompositor&) = delete;
  FakeCompositor& operator=(const FakeCompositor&) = delete;

  // Answers its clients, without waiting for them.
  void dispatch();

  // Tells every keyboard; any text.
  void setKeymap(std::string keymap);

  // The seat's keyboard is unplugged, or comes back.
  void setHasKeyboard(bool has);

  std::size_t keyboards() const { return fKeyboards.size(); }

 private:
  struct Requests;
  void addSeat(wl_client* client, std::uint32_t id);
  void addKeyboard(wl_client* client, std::uint32_t id);
  void sendKeymap(wl_resource* keyboard) const;

  wl_display* fDisplay;
  std::string fKeymap;
  bool fHasKeyboard;
  std::vector<wl_resource*> fSeats;
  std::vector<wl_resource*> fKeyboards;
};

}  // namespace veltrix::testing
