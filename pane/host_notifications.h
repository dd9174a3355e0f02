#pragma once

#include <QObject>

namespace veltrix {

// What the program that hosts the pane tells it while the pane is shown.
class HostNotifications : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

 signals:
  void windowDidBecomeKey();          // any window of the program is now the active one
  void applicationDidResignActive();  // the user has turned to another program
};

}  // namespace veltrix
