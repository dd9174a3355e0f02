// Measures how long the action editor takes from the call that opens it until its window has been painted.
//
// usage: editor_bench
//
// Prints "FIRST_MILLISECONDS AGAIN_MILLISECONDS": the median over fresh editors that make their widgets, and
// the median over later openings of one editor. Both begin with a pane that has been on the screen for a
// while, so fonts and style have been loaded.

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

#include "editor/edit_controller.h"
#include "editor/editor_host.h"
#include "platform/bundle.h"
#include "settings/settings_keys.h"
#include "widgets/button_picture.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kRounds = 31;
constexpr std::int32_t kButton = 2;
constexpr std::uint32_t kSystem = 0x1090;

// Shows a dialog until its contents have been handed to the window system, then cancels it.
class PaintingHost : public QObject, public veltrix::EditorHost {
 public:
  std::int32_t modalDialog(QDialog* window) override {
    fPainted = false;
    window->setWindowModality(Qt::WindowModal);
    window->installEventFilter(this);
    window->show();
    while (!fPainted) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    fPaintedAt = Clock::now();
    window->removeEventFilter(this);
    window->hide();
    QCoreApplication::processEvents();
    return 0;
  }
  void actModalButtonOK() override {}
  void actModalButtonCancel() override {}
  std::int32_t vtxCurDeviceTabIndex() const override { return 0; }
  std::int32_t vtxCurAssignmentTabIndex(std::int32_t button) const override { return button; }

  Clock::time_point paintedAt() const { return fPaintedAt; }

 protected:
  // All widgets of the window are painted in one go that the window's own update request begins.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      QMetaObject::invokeMethod(
          this, [this] { fPainted = true; }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  bool fPainted = false;
  Clock::time_point fPaintedAt;
};

veltrix::plist::Dictionary makeEntry() {
  auto action = veltrix::plist::Dictionary::create();
  action.set(veltrix::keys::kCommand, 10);
  action.set(veltrix::keys::kKeyCode, 12);
  auto buttons = veltrix::plist::Dictionary::create();
  buttons.set("02", action);
  auto entry = veltrix::plist::Dictionary::create();
  entry.set(veltrix::keys::kButtons, buttons);
  return entry;
}

double open(VeltrixEditController* controller, const PaintingHost& host) {
  const auto start = Clock::now();
  controller->editButtonAction(kButton, makeEntry(), veltrix::plist::Array::create());
  return std::chrono::duration<double, std::milli>(host.paintedAt() - start).count();
}

double median(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  const veltrix::Bundle bundle = veltrix::Bundle::standard();
  QWidget pane;
  auto* rows = new QVBoxLayout(&pane);
  auto* picture = new veltrix::ButtonPicture;
  picture->addCallout(kButton);
  rows->addWidget(picture);
  pane.show();
  QCoreApplication::processEvents();

  PaintingHost host;
  std::vector<double> first;
  std::vector<double> again;
  for (int round = 0; round < kRounds; ++round) {
    VeltrixEditController controller(bundle, &host, &pane, kSystem);
    first.push_back(open(&controller, host));
    again.push_back(open(&controller, host));
    qDeleteAll(pane.findChildren<QDialog*>(Qt::FindDirectChildrenOnly));
  }
  std::printf("%.2f %.2f\n", median(first), median(again));
  return 0;
}
