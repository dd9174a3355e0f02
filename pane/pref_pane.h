#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <cstdint>
#include <memory>

#include "helperlink/device_list.h"
#include "pane/pane_services.h"
#include "platform/bundle.h"

class VeltrixController;
class VeltrixEditController;
class VeltrixParamController;

namespace veltrix {
class HostNotifications;
class TableTranslator;
struct Outlets;
}  // namespace veltrix

// The settings pane as its host sees it. The host makes it, loads the main view into a window of its own, and
// then calls mainViewDidLoad once and didSelect and willUnselect in turn, whenever the pane is shown and
// left. One pane per process, on the main thread.
class VeltrixPrefPane : public QObject {
  Q_OBJECT

 public:
  // `notifications` must outlive the pane.
  static std::unique_ptr<VeltrixPrefPane> initWithBundle(veltrix::Bundle bundle,
                                                         veltrix::PaneServices services,
                                                         veltrix::HostNotifications* notifications);
  ~VeltrixPrefPane() override;

  // Makes the widgets, the controller, and shows what the settings file holds. The pane owns the view until
  // the host puts it into a window. To be called once, before mainViewDidLoad.
  QWidget* loadMainView();
  QWidget* mainView() const { return fMainView; }

  void mainViewDidLoad();
  void didSelect();
  void willUnselect();

  void sysPrefWindowDidBecomeKey();
  void sysPrefDidResignActive();

  // The last answer of the helper, for the pane's lifetime.
  VeltrixDeviceList* vtxGetDeviceList() { return &fDeviceList; }

  // Asks the helper once (at most 250 ms) and shows a changed number of trackballs.
  void vtxCheckDevices();

  // The text of `key` (UTF-8) in the user's language; the key itself when there is none.
  QString vtxLocString(const char* key) const;

 private:
  VeltrixPrefPane(veltrix::Bundle bundle, veltrix::PaneServices services,
                  veltrix::HostNotifications* notifications);
  void setTakesKeystrokes(bool takes);

  veltrix::Bundle fBundle;
  veltrix::PaneServices fServices;
  veltrix::HostNotifications* fNotifications;
  std::unique_ptr<veltrix::TableTranslator> fTranslator;
  QPointer<QWidget> fMainView;
  std::unique_ptr<veltrix::Outlets> fOutlets;
  std::unique_ptr<VeltrixEditController> outControllerVeltrixEdit;
  std::unique_ptr<VeltrixParamController> outControllerVeltrixParams;
  std::unique_ptr<VeltrixController> outControllerVeltrix;
  QTimer fDeviceCheckTimer;
  std::int16_t fDeviceCount = -1;
  bool fPanelIsFront = false;
  bool fTakesKeystrokes = false;
  VeltrixDeviceList fDeviceList{};
};

extern VeltrixPrefPane* gVeltrixPrefPane;      // null before initWithBundle
extern const veltrix::Bundle* gVeltrixBundle;  // the pane's own
