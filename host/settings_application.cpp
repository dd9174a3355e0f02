#include "host/settings_application.h"

#include <fcntl.h>
#include <unistd.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QLocale>
#include <QSocketNotifier>
#include <QTimer>
#include <QTranslator>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include "helperlink/device_state.h"
#include "helperlink/helper_protocol.h"
#include "host/color_scheme.h"
#include "host/fusion_look.h"
#include "host/settings_window.h"
#include "host/toolkit_texts.h"
#include "keyboard/keystroke_application.h"
#include "pane/pane_services.h"
#include "platform/application_service.h"
#include "platform/bundle.h"
#include "platform/event_receiver.h"
#include "platform/typed_events.h"

namespace veltrix {
namespace {

std::array<int, 2> signalPipe = {-1, -1};

void noteSignal(int /*number*/) {
  const char byte = 0;
  // A full pipe has told already.
  [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
}

// Signals that ask for the end stop the event loop, so that they leave by the same door as the close button.
void stopOnSignals(QApplication* application) {
  if (pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    return;
  }
  struct sigaction action {};
  action.sa_handler = noteSignal;
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    sigaction(number, &action, nullptr);
  }
  auto* notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, application);
  QObject::connect(notifier, &QSocketNotifier::activated, application, [] { QCoreApplication::exit(0); });
}

// Ends the process, with a message, when the command line is wrong.
ColorScheme askedColors(const QApplication& application) {
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Sets up trackballs."));
  parser.addHelpOption();
  const QCommandLineOption colors(QStringLiteral("colors"),
                                  QStringLiteral("The window's colors: desktop (as usual), light or dark."),
                                  QStringLiteral("scheme"), QStringLiteral("desktop"));
  parser.addOption(colors);
  parser.process(application);
  const QString name = parser.value(colors);
  const auto scheme = colorSchemeNamed(name);
  if (!scheme) {
    std::fprintf(stderr, "veltrix-settings: --colors: there is no scheme named \"%s\"\n", qPrintable(name));
    std::exit(2);
  }
  return *scheme;
}

std::int32_t takeEvent(const IncomingEvent& event, EventReply* /*reply*/) {
  const bool isDeviceState = event.eventClass == kVeltrixEventClass && event.eventId == kDeviceStateEvent;
  return isDeviceState ? VeltrixDeviceStateHandler(event) : kEventNotHandled;
}

// Whoever has the application's name also gets the events that are addressed to it. The result takes them for
// as long as it lives.
std::unique_ptr<EventReceiver> listenOnBus(ApplicationService* service, SettingsWindow* window) {
  if (service->descriptor() < 0) {
    return nullptr;
  }
  service->setActivateHandler([window](const Activation& activation) { window->raiseFor(activation); });
  auto* notifier = new QSocketNotifier(service->descriptor(), QSocketNotifier::Read, window);
  const auto process = [service, notifier] {
    if (!service->process()) {
      notifier->setEnabled(false);
    }
  };
  QObject::connect(notifier, &QSocketNotifier::activated, window, process);
  // What came before the window was there has been read already and makes nothing readable.
  QTimer::singleShot(0, window, process);
  auto receiver = EventReceiver::onBus(service->bus(), takeEvent);
  return receiver ? std::move(receiver.value()) : nullptr;
}

}  // namespace

int runSettingsApplication(int argc, char** argv, ApplicationService* service, const Activation& activation) {
  if (!activation.token.empty()) {
    qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activation.token));
  }
  if (!activation.startupId.empty()) {
    qputenv("DESKTOP_STARTUP_ID", QByteArray::fromStdString(activation.startupId));
  }
  KeystrokeApplication application(argc, argv);
  QApplication::setApplicationDisplayName("Veltrix");
  QApplication::setDesktopFileName("com.aldmoor.veltrix");
  QApplication::setLayoutDirection(QLocale().textDirection());
  applyColorScheme(askedColors(application));
  mendFusion();
  stopOnSignals(&application);
  QTranslator toolkitTexts;
  if (loadToolkitTexts(&toolkitTexts, QLocale::system())) {
    QApplication::installTranslator(&toolkitTexts);
  }

  const Bundle bundle = Bundle::standard();
  SettingsWindow window(bundle, standardPaneServices(bundle));
  window.open();
  const auto events = listenOnBus(service, &window);
  const int status = QApplication::exec();
  window.leave();
  return status;
}

}  // namespace veltrix
