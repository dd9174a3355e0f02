#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "helper/jump/dialog_jumper.h"

struct xcb_connection_t;

namespace veltrix {

struct XConnectionCloser {
  void operator()(xcb_connection_t* connection) const;
};

// What the window manager says of the window in front.
struct FrontWindow {
  bool isDialog = false;
  std::uint32_t processId = 0;  // of the program that it belongs to; 0 when that is not known
};

// The pointer of the X server that DISPLAY names. Its calls wait for the server.
class X11Pointer final : public JumpScreen {
 public:
  // Null when there is no such server.
  static std::unique_ptr<X11Pointer> open();

  std::optional<ScreenState> look() override;
  // Exactly there: the server does not accelerate this.
  void moveTo(ScreenPoint point) override;
  void watch(std::uint32_t window) override;
  std::vector<std::uint32_t> takeClosed() override;

  // Whether another window has come to the front since the last call; takeClosed() is to be called before.
  bool takeFrontChanged() { return std::exchange(fFrontChanged, false); }
  FrontWindow frontWindow();

  // Readable when takeClosed() is to be called, and when the server has gone.
  int descriptor() const;
  bool isLost() const;

 private:
  X11Pointer(std::unique_ptr<xcb_connection_t, XConnectionCloser> connection, std::uint32_t root);
  std::uint32_t activeWindow();
  std::optional<ScreenArea> areaOf(std::uint32_t window);
  std::vector<std::uint32_t> property(std::uint32_t window, std::uint32_t name, std::uint32_t type);

  std::unique_ptr<xcb_connection_t, XConnectionCloser> fConnection;
  std::uint32_t fRoot;
  std::uint32_t fActiveWindowAtom = 0;
  std::uint32_t fWindowTypeAtom = 0;
  std::uint32_t fDialogTypeAtom = 0;
  std::uint32_t fProcessIdAtom = 0;
  bool fFrontChanged = false;
};

}  // namespace veltrix
