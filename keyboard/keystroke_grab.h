#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWindow>
#include <chrono>
#include <memory>

namespace veltrix {
class WaylandShortcutsInhibitor;

// Keeps the desktop from acting on keys while a window has them all to itself: a grab of the keyboard under
// X11, an inhibitor of the compositor's shortcuts under Wayland, nothing elsewhere. It ends with the object,
// and with the process, however that ends.
class KeystrokeGrab : public QObject {
 public:
  enum class State {
    kNone,    // the desktop acts on its keys
    kTrying,  // asked for and not granted, which may come
    kHeld,    // granted
  };

  KeystrokeGrab();
  ~KeystrokeGrab() override;

  // Takes the keys soon after, so that events that are under way come first. Under X11 somebody else may have
  // the keyboard, such as a menu that is about to close; it is then asked for again, for at most two seconds.
  //
  // A screen cannot be locked while somebody has the keyboard, so under X11 the keys go back when there was
  // no call for the idle limit. A call while they are taken for this window does no more than start that
  // anew.
  void take(QWindow* window);

  void giveBack();

  State state() const;

  // Half a minute unless it is set.
  void setIdleLimit(std::chrono::milliseconds limit) { fIdle.setInterval(limit); }

 private:
  void attempt();

  QPointer<QWindow> fWindow;
  QTimer fNextAttempt;
  QTimer fIdle;
  int fAttemptsLeft = 0;
  bool fHeld = false;
  std::unique_ptr<WaylandShortcutsInhibitor> fInhibitor;
};

}  // namespace veltrix
