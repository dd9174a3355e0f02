#pragma once

class QKeyEvent;

namespace veltrix {
class KeystrokeReceiver;
}  // namespace veltrix

// Names the receiver of keystrokes (null for none) and exchanges the application's way of delivering key
// events with the one that diverts them to the receiver. Every call exchanges, so calls with a receiver and
// with null must alternate; a receiver must outlive its turn. Works in a process whose application is a
// veltrix::KeystrokeApplication. On the main thread only.
void VeltrixSwapNSAppMethods(veltrix::KeystrokeReceiver* receiver);

// Hands a key press to the receiver that was named last; does nothing when there is none or when the key has
// no virtual key code.
void VeltrixSendKeystrokeToField(const QKeyEvent& event);
