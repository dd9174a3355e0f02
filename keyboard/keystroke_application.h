#pragma once

#include <QApplication>
#include <array>
#include <cstddef>

namespace veltrix {

// The application of a process that records keystrokes. Its events reach their receivers through a table of
// methods, in which VeltrixSwapNSAppMethods puts its own in front of the toolkit's; every key press of the
// process comes by here first, before shortcuts, dialogs and widgets see it.
//
// Events of other threads do not go through the table. An exception that leaves an event handler ends here.
class KeystrokeApplication : public QApplication {
  Q_OBJECT

 public:
  // What can be sent to the application. An event of a key press comes twice: first the question whether
  // somebody wants to override a shortcut (or the shortcut itself), as key equivalent, then the press.
  enum Selector : std::size_t {
    kSendEvent,
    kPerformKeyEquivalent,
    kSendEventXRAppPatch,
    kPerformKeyXRAppPatch,
    kSelectorCount,
  };
  using Method = bool (KeystrokeApplication::*)(QObject* receiver, QEvent* event);
  using Methods = std::array<Method, kSelectorCount>;

  KeystrokeApplication(int& argc, char** argv) : QApplication(argc, argv) {}

  bool notify(QObject* receiver, QEvent* event) override;

  // The methods of the class, by selector.
  static Methods& methods();

  // Whether a key press now would be recorded.
  static bool isCapturing();

 signals:
  void captureChanged();     // VeltrixSwapNSAppMethods has been called
  void keystrokeDiverted();  // a key press went to the receiver instead of its usual way

 private:
  friend struct KeystrokeMethods;

  // The toolkit's own way.
  bool deliver(QObject* receiver, QEvent* event) { return QApplication::notify(receiver, event); }

  // Divert the event, or pass it on to what the patch selector stands for now.
  bool sendEventXRAppPatch(QObject* receiver, QEvent* event);
  bool performKeyXRAppPatch(QObject* receiver, QEvent* event);

  bool send(Selector selector, QObject* receiver, QEvent* event) {
    return (this->*methods()[selector])(receiver, event);
  }
};

}  // namespace veltrix

// Exchanges what two selectors of a class stand for; true also when there is no such selector, and then
// nothing has changed.
bool SwapObjCMethods(veltrix::KeystrokeApplication::Methods& methods, std::size_t selectorA,  // NOLINT
                     std::size_t selectorB);
