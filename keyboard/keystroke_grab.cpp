#include "keyboard/keystroke_grab.h"

#include <xcb/xcb.h>

#include <QGuiApplication>

#include "keyboard/keystroke_wayland_inhibitor.h"

namespace veltrix {
namespace {

constexpr int kAttempts = 41;
constexpr int kMillisecondsBetweenAttempts = 50;
constexpr std::chrono::seconds kIdleLimit{30};

}  // namespace

KeystrokeGrab::KeystrokeGrab() {
  fNextAttempt.setSingleShot(true);
  QObject::connect(&fNextAttempt, &QTimer::timeout, this, &KeystrokeGrab::attempt);
  fIdle.setSingleShot(true);
  fIdle.setInterval(kIdleLimit);
  QObject::connect(&fIdle, &QTimer::timeout, this, &KeystrokeGrab::giveBack);
}

KeystrokeGrab::~KeystrokeGrab() {
  giveBack();
}

void KeystrokeGrab::take(QWindow* window) {
  if (window == fWindow && state() != State::kNone) {
    if (fHeld) {
      fIdle.start();
    }
    return;
  }
  giveBack();
  fWindow = window;
  fAttemptsLeft = kAttempts;
  fNextAttempt.start(0);
}

KeystrokeGrab::State KeystrokeGrab::state() const {
  if (fHeld || (fInhibitor && fInhibitor->isActive())) {
    return State::kHeld;
  }
  return fInhibitor || fNextAttempt.isActive() ? State::kTrying : State::kNone;
}

void KeystrokeGrab::attempt() {
  if (!fWindow) {
    return;
  }
  if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
    fInhibitor = std::make_unique<WaylandShortcutsInhibitor>(fWindow);
  } else if (QGuiApplication::platformName() == QLatin1String("xcb")) {
    fHeld = fWindow->setKeyboardGrabEnabled(true);
    if (fHeld) {
      fIdle.start();
    } else if (--fAttemptsLeft > 0) {
      fNextAttempt.start(kMillisecondsBetweenAttempts);
    }
  }
}

void KeystrokeGrab::giveBack() {
  fNextAttempt.stop();
  fIdle.stop();
  fInhibitor.reset();
  if (fHeld && fWindow) {
    fWindow->setKeyboardGrabEnabled(false);
    // The toolkit keeps the request until an event arrives, and what is released here could be why none does.
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
      xcb_flush(x11->connection());
    }
  }
  fHeld = false;
  fWindow.clear();
}

}  // namespace veltrix
