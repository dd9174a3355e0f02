#include "keyboard/keystroke_application.h"

#include <QKeyEvent>
#include <QThread>
#include <utility>

#include "keyboard/keystroke_capture.h"
#include "keyboard/keystroke_event.h"
#include "keyboard/keystroke_receiver.h"

namespace veltrix {

// The class as the platform made it; each entry also says which body a selector starts with.
struct KeystrokeMethods {
  static inline KeystrokeApplication::Methods methods = {
      &KeystrokeApplication::deliver,
      &KeystrokeApplication::deliver,
      &KeystrokeApplication::sendEventXRAppPatch,
      &KeystrokeApplication::performKeyXRAppPatch,
  };
  static inline KeystrokeReceiver* receiver = nullptr;

  static bool arePatched() {
    return methods[KeystrokeApplication::kSendEvent] == &KeystrokeApplication::sendEventXRAppPatch;
  }
};

namespace {

bool receiverIsActive() {
  return KeystrokeMethods::receiver != nullptr && KeystrokeMethods::receiver->vtxOverrideKeysIsActive();
}

bool isDiverted(const QEvent& event) {
  switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
      return !isModifierKey(static_cast<const QKeyEvent&>(event)) && receiverIsActive();
    case QEvent::Shortcut:
      return receiverIsActive();
    default:
      return false;
  }
}

}  // namespace

KeystrokeApplication::Methods& KeystrokeApplication::methods() {
  return KeystrokeMethods::methods;
}

bool KeystrokeApplication::isCapturing() {
  return KeystrokeMethods::arePatched() && receiverIsActive();
}

bool KeystrokeApplication::notify(QObject* receiver, QEvent* event) {
  try {
    if (QThread::currentThread() != thread()) {
      return deliver(receiver, event);
    }
    const bool isKeyEquivalent =
        event->type() == QEvent::ShortcutOverride || event->type() == QEvent::Shortcut;
    return send(isKeyEquivalent ? kPerformKeyEquivalent : kSendEvent, receiver, event);
  } catch (...) {
    // The toolkit's loop cannot go on with it; the program can.
    return false;
  }
}

bool KeystrokeApplication::sendEventXRAppPatch(QObject* receiver, QEvent* event) {
  if (!isDiverted(*event)) {
    return send(kSendEventXRAppPatch, receiver, event);
  }
  // It would come again to the widget; whoever handles it at the window ends its way.
  event->accept();
  const auto& press = static_cast<const QKeyEvent&>(*event);
  // The key that brought the focus here may still be held.
  if (!press.isAutoRepeat()) {
    VeltrixSendKeystrokeToField(press);
    emit keystrokeDiverted();
  }
  return true;
}

// Accepting makes the toolkit send the press itself next, which is then recorded.
bool KeystrokeApplication::performKeyXRAppPatch(QObject* receiver, QEvent* event) {
  if (!isDiverted(*event)) {
    return send(kPerformKeyXRAppPatch, receiver, event);
  }
  event->accept();
  return true;
}

}  // namespace veltrix

bool SwapObjCMethods(veltrix::KeystrokeApplication::Methods& methods, std::size_t selectorA,  // NOLINT
                     std::size_t selectorB) {
  if (selectorA < methods.size() && selectorB < methods.size()) {
    std::swap(methods[selectorA], methods[selectorB]);
  }
  return true;
}

void VeltrixSwapNSAppMethods(veltrix::KeystrokeReceiver* receiver) {
  using veltrix::KeystrokeApplication;
  veltrix::KeystrokeMethods::receiver = receiver;
  auto& methods = KeystrokeApplication::methods();
  SwapObjCMethods(methods, KeystrokeApplication::kSendEvent, KeystrokeApplication::kSendEventXRAppPatch);
  SwapObjCMethods(methods, KeystrokeApplication::kPerformKeyEquivalent,
                  KeystrokeApplication::kPerformKeyXRAppPatch);
  if (auto* application = qobject_cast<KeystrokeApplication*>(QCoreApplication::instance())) {
    emit application->captureChanged();
  }
}

void VeltrixSendKeystrokeToField(const QKeyEvent& event) {
  const auto keystroke = veltrix::keystrokeOf(event);
  if (keystroke && veltrix::KeystrokeMethods::receiver != nullptr) {
    veltrix::KeystrokeMethods::receiver->vtxReceiveKeystroke(keystroke->keyCode, keystroke->character,
                                                             keystroke->modifiers);
  }
}
