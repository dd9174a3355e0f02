#include "keyboard/keystroke_event.h"

#include <QKeyEvent>

#include "keyboard/keystroke_qt_keys.h"
#include "keyboard/virtual_keys.h"
#include "settings/modifier_mask.h"

namespace veltrix {
namespace {

// X servers and Wayland compositors number keys as the kernel does, shifted by the codes that the first X
// keyboards reserved.
constexpr quint32 kScanCodeOffset = 8;

// The toolkit tells neither of these two; the state that the event came with does. X fixes the first bit, and
// every layout of xkeyboard-config keeps the second for the third level. Wayland's keymaps agree with both.
constexpr quint32 kNativeLock = 0x02;
constexpr quint32 kNativeThirdLevel = 0x80;

// X keysyms of keys that only change what other keys mean.
constexpr bool isModifierSymbol(quint32 symbol) {
  const bool latchesOrLocks = symbol >= 0xfe01 && symbol <= 0xfe13;  // ISO_Lock to ISO_Level5_Lock
  const bool modifies = symbol >= 0xffe1 && symbol <= 0xffee;        // Shift_L to Hyper_R
  return latchesOrLocks || modifies || symbol == 0xff7e;             // Mode_switch
}

// By the place of the key where the event tells it, as on a real keyboard; events that programs make up carry
// only the key's meaning.
std::optional<std::uint8_t> keyCodeOf(const QKeyEvent& event) {
  if (event.nativeScanCode() > kScanCodeOffset) {
    return virtualKeyOf(event.nativeScanCode() - kScanCodeOffset);
  }
  const auto evdevCode = evdevCodeOfQtKey(event.key(), event.modifiers().testFlag(Qt::KeypadModifier));
  return evdevCode ? virtualKeyOf(*evdevCode) : std::nullopt;
}

std::uint16_t modifiersOf(const QKeyEvent& event) {
  const Qt::KeyboardModifiers held = event.modifiers();
  const bool thirdLevel = (event.nativeModifiers() & kNativeThirdLevel) != 0;
  unsigned mask = 0;
  mask |= held.testFlag(Qt::MetaModifier) ? kCommandModifier : 0U;
  mask |= held.testFlag(Qt::AltModifier) || held.testFlag(Qt::GroupSwitchModifier) || thirdLevel
              ? kOptionModifier
              : 0U;
  mask |= held.testFlag(Qt::ControlModifier) ? kControlModifier : 0U;
  mask |= held.testFlag(Qt::ShiftModifier) ? kShiftModifier : 0U;
  mask |= (event.nativeModifiers() & kNativeLock) != 0 ? kCapsLockModifier : 0U;
  return static_cast<std::uint16_t>(mask);
}

}  // namespace

std::optional<Keystroke> keystrokeOf(const QKeyEvent& event) {
  const auto keyCode = keyCodeOf(event);
  if (!keyCode) {
    return std::nullopt;
  }
  const QString text = event.text();
  return Keystroke{*keyCode, text.isEmpty() ? char16_t{0} : text.at(0).unicode(), modifiersOf(event)};
}

bool isModifierKey(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_Mode_switch:
      return true;
    default:
      return isModifierSymbol(event.nativeVirtualKey());
  }
}

}  // namespace veltrix
