#pragma once

#include <QWidget>
#include <memory>

#include "pane/host_notifications.h"
#include "pane/pane_services.h"
#include "platform/bundle.h"

class VeltrixPrefPane;

namespace veltrix {

struct Activation;

// The window that hosts the pane, and calls its operations in their order.
class SettingsWindow : public QWidget {
  Q_OBJECT

 public:
  SettingsWindow(Bundle bundle, PaneServices services);
  ~SettingsWindow() override;

  // Shows the window with the pane in it; once.
  void open();

  // Leaves the pane; once, later calls do nothing.
  void leave();

  // Brings the window to the front.
  void raiseFor(const Activation& activation);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void listen();

  HostNotifications fNotifications;
  std::unique_ptr<VeltrixPrefPane> fPane;
  bool fSelected = false;
  bool fPainted = false;
};

}  // namespace veltrix
