// The main function of tests that need widgets: one application in the style that every system has, so that
// sizes and colours do not depend on the desktop that runs the test. Keystrokes can be recorded in it.
#include <gtest/gtest.h>

#include "keyboard/keystroke_application.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  const veltrix::KeystrokeApplication application(argc, argv);
  // Only now: a style from before the application has no owner, and leaks when a test sets another one.
  QApplication::setStyle(QStringLiteral("fusion"));
  return RUN_ALL_TESTS();
}
