// The main function of tests that need widgets: one application in the style that every system has, so that
// sizes and colours do not depend on the desktop that runs the test.
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication::setStyle(QStringLiteral("fusion"));
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
