#include "host/settings_window.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

#include "pane/pref_pane.h"
#include "platform/application_service.h"
#include "widgets/picture_icon.h"

namespace veltrix {
namespace {

// In lines of text, so that the window grows with the font; bounded by the screen.
constexpr int kWidthInLines = 54;
constexpr int kHeightInLines = 43;
constexpr int kTitleBarInLines = 2;

}  // namespace

SettingsWindow::SettingsWindow(Bundle bundle, PaneServices services)
    : fPane(VeltrixPrefPane::initWithBundle(std::move(bundle), std::move(services), &fNotifications)) {
  setWindowTitle("Veltrix");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(fPane->loadMainView());
  const int line = fontMetrics().height();
  // The layout makes it larger when that does not suffice.
  // The title bar needs some of the screen, too.
  const QSize room = screen()->availableSize() - QSize(0, kTitleBarInLines * line);
  resize(QSize(kWidthInLines * line, kHeightInLines * line).boundedTo(room));
}

SettingsWindow::~SettingsWindow() = default;

// The first poll comes before the window, because its answer decides which tabs there are; it takes well
// under a millisecond when the helper runs, and fails at once when it does not.
void SettingsWindow::open() {
  fPane->mainViewDidLoad();
  fPane->didSelect();
  fSelected = true;
  listen();
  fPane->mainView()->setFocus();
  show();
}

void SettingsWindow::leave() {
  if (fSelected) {
    fSelected = false;
    fPane->willUnselect();
  }
}

void SettingsWindow::raiseFor(const Activation& activation) {
  if (!activation.token.empty()) {
    // The toolkit takes it from there when it asks the compositor, and removes it.
    qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activation.token));
  }
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

// The icon is drawn when the page is on the screen already: nobody waits for it.
void SettingsWindow::paintEvent(QPaintEvent* event) {
  QWidget::paintEvent(event);
  if (!fPainted) {
    fPainted = true;
    QTimer::singleShot(0, this, [this] { setWindowIcon(pictureIcon("icon")); });
  }
}

void SettingsWindow::listen() {
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow* window) {
    if (window != nullptr) {
      emit fNotifications.windowDidBecomeKey();
    }
  });
  connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
    if (state != Qt::ApplicationActive) {
      emit fNotifications.applicationDidResignActive();
    }
  });
}

}  // namespace veltrix
