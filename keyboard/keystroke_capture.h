#pragma once

class QEvent;

namespace veltrix {
class KeystrokeReceiver;
}  // namespace veltrix

// Names the receiver of keystrokes (null for none) and exchanges the application's way of delivering key
// events with the one that diverts them to the receiver. Every call exchanges, so calls with a receiver and
// with null must alternate. Works in a process whose application is a veltrix::KeystrokeApplication.
void VeltrixSwapNSAppMethods(veltrix::KeystrokeReceiver* receiver);
