#pragma once

namespace veltrix {

// Notices that a person pressed and released the same modifier key twice, with no other key or click in
// between and however slowly. Keys are Qt::Key values.
class ModifierTap {
 public:
  void press(int modifierKey) {
    fLast = fDown == 0 ? fLast : 0;
    fDown = fDown == 0 ? modifierKey : kSeveral;
  }

  // True when this ends the second tap.
  bool release(int modifierKey) {
    const bool isTap = fDown == modifierKey;
    const bool isSecond = isTap && fLast == modifierKey;
    fLast = isTap && !isSecond ? modifierKey : 0;
    fDown = 0;
    return isSecond;
  }

  // Something else happened.
  void interrupt() { *this = ModifierTap(); }

 private:
  static constexpr int kSeveral = -1;

  int fDown = 0;
  int fLast = 0;
};

}  // namespace veltrix
