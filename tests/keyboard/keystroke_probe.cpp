// A window with a plain field, a keystroke field and a button, for tests that type on a whole desktop. It
// prints a line for everything that happens, and carries out the words that it reads:
//   install, remove    the capture (it starts installed)
//   hide, show, close  the window
//   plain, field       gives that control the focus
//   hurry, patience    the field's idle limit: a millisecond or a minute
#include <unistd.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSocketNotifier>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <array>
#include <cstdio>

#include "keyboard/keystroke_application.h"
#include "keyboard/keystroke_capture.h"
#include "keyboard/keystroke_field.h"
#include "keystroke_recorder.h"

namespace veltrix {
namespace {

using namespace std::chrono_literals;

class PrintingRecorder : public testing::KeystrokeRecorder {
 public:
  using KeystrokeRecorder::KeystrokeRecorder;

  void vtxReceiveKeystroke(std::uint8_t keyCode, char16_t withCharacter,
                           std::uint16_t andModifiers) override {
    std::printf("key %d 0x%04x %d\n", keyCode, andModifiers, withCharacter);
  }
};

class Probe : public QWidget {
 public:
  Probe() {
    setWindowTitle(QStringLiteral("Keystroke probe"));
    auto* layout = new QVBoxLayout(this);
    for (QWidget* control : std::initializer_list<QWidget*>{&fPlain, &fField, &fNext}) {
      layout->addWidget(control);
    }
    fPlain.setObjectName(QStringLiteral("plain"));
    fField.setObjectName(QStringLiteral("field"));
    fNext.setObjectName(QStringLiteral("next"));
    fField.setFocus();
    connect(qApp, &QApplication::focusChanged, this, [](QWidget*, QWidget* now) {
      std::printf("focus %s\n", now == nullptr ? "nothing" : qPrintable(now->objectName()));
    });
    connect(qApp, &QGuiApplication::focusWindowChanged, this,
            [](const QWindow* now) { std::printf("window %s\n", now == nullptr ? "inactive" : "active"); });
    connect(&fPlain, &QLineEdit::textChanged, this,
            [](const QString& text) { std::printf("text %s\n", qPrintable(text)); });
    // The state has no signal, because nobody but a test needs one; a state that ends soon may be left out.
    connect(&fLook, &QTimer::timeout, this, &Probe::printGrab);
    fLook.start(10);
    VeltrixSwapNSAppMethods(&fRecorder);
    fInstalled = true;
  }

  ~Probe() override {
    if (fInstalled) {
      VeltrixSwapNSAppMethods(nullptr);
    }
  }

  void obey(QByteArrayView word) {
    if (word == "install" || word == "remove") {
      fInstalled = word == "install";
      VeltrixSwapNSAppMethods(fInstalled ? &fRecorder : nullptr);
    } else if (word == "hide" || word == "show") {
      setVisible(word == "show");
    } else if (word == "plain") {
      fPlain.setFocus();
    } else if (word == "field") {
      fField.setFocus();
    } else if (word == "hurry" || word == "patience") {
      fField.setIdleLimit(word == "hurry" ? 1ms : 60s);
    } else {
      close();
    }
    std::printf("done %.*s\n", static_cast<int>(word.size()), word.data());
  }

 protected:
  void closeEvent(QCloseEvent* event) override {
    std::puts("closed");
    QWidget::closeEvent(event);
    QCoreApplication::quit();
  }

 private:
  void printGrab() {
    static constexpr std::array kNames = {"none", "trying", "held"};
    if (const char* name = kNames.at(static_cast<std::size_t>(fField.grabState())); name != fGrab) {
      fGrab = name;
      std::printf("grab %s\n", name);
    }
    if (const bool popup = QApplication::activePopupWidget() != nullptr; popup) {
      std::puts("popup");
    }
  }

  QLineEdit fPlain;
  KeystrokeField fField;
  QPushButton fNext;
  PrintingRecorder fRecorder{&fField};
  QTimer fLook;
  const char* fGrab = "";
  bool fInstalled = false;
};

}  // namespace
}  // namespace veltrix

int main(int argc, char** argv) {
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  veltrix::KeystrokeApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  veltrix::Probe probe;
  probe.show();
  QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &probe, [&probe] {
    std::array<char, 256> bytes{};
    const ssize_t size = read(STDIN_FILENO, bytes.data(), bytes.size());
    if (size <= 0) {
      QCoreApplication::quit();
      return;
    }
    const QByteArray words(bytes.data(), size);
    for (const QByteArray& word : words.simplified().split(' ')) {
      probe.obey(word);
    }
  });
  return QApplication::exec();
}
