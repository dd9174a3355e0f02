#pragma once

#include <QWidget>
#include <vector>

#include "keyboard/keystroke_event.h"
#include "keyboard/keystroke_receiver.h"

namespace veltrix::testing {

// Records keystrokes while a widget has the focus in the active window, as the action editor does.
class KeystrokeRecorder : public KeystrokeReceiver {
 public:
  explicit KeystrokeRecorder(const QWidget* field) : fField(field) {}

  bool vtxOverrideKeysIsActive() const override {
    return fField->isVisible() && fField->isActiveWindow() && fField->hasFocus();
  }

  void vtxReceiveKeystroke(std::uint8_t keyCode, char16_t withCharacter,
                           std::uint16_t andModifiers) override {
    fKeystrokes.push_back({keyCode, withCharacter, andModifiers});
  }

  const std::vector<Keystroke>& keystrokes() const { return fKeystrokes; }

 private:
  const QWidget* fField;
  std::vector<Keystroke> fKeystrokes;
};

}  // namespace veltrix::testing
