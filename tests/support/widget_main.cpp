#include <gtest/gtest.h>

#include <QApplication>

// Widgets need an application object, which gtest's own main does not make.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
