// The yardstick for start-up: as little as a Qt Widgets program can be that shows a window of the same size.
#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QLabel label(QStringLiteral("Hello"));
  label.resize(760, 600);
  label.show();
  return QApplication::exec();
}
