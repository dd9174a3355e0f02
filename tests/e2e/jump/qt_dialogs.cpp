// A program with dialogs, led by lines on standard input: "dialog", "late", "hang" and "window" open one,
// "place" prints where its default button is, "close" closes it. Each is answered by a line.

#include <unistd.h>
#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSocketNotifier>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>
#include <csignal>
#include <iostream>
#include <memory>
#include <string>

namespace {

constexpr int kLateMilliseconds = 250;

class Dialogs : public QObject {
 public:
  void obey(const std::string& line) {
    std::string answer = "done";
    if (line == "dialog")
      openMessage();
    else if (line == "late")
      openLate();
    else if (line == "hang")
      hangOnceActive();
    else if (line == "window")
      openWindow();
    else if (line == "place")
      answer = place();
    else
      fWindow.reset();
    std::cout << answer << std::endl;
  }

 private:
  void openMessage() {
    auto box = std::make_unique<QMessageBox>(QMessageBox::Question, "Qt dialog", "Go on?",
                                             QMessageBox::Ok | QMessageBox::Cancel);
    box->setDefaultButton(QMessageBox::Ok);
    fButton = box->button(QMessageBox::Ok);
    show(std::move(box));
  }

  // Its default button is one only after a while.
  void openLate() {
    auto dialog = std::make_unique<QDialog>();
    dialog->setWindowTitle("Qt dialog");
    auto* const layout = new QVBoxLayout(dialog.get());
    auto* const other = new QPushButton("Other");
    auto* const button = new QPushButton("Late");
    layout->addWidget(other);
    layout->addWidget(button);
    other->setAutoDefault(false);
    button->setAutoDefault(false);
    fButton = button;
    show(std::move(dialog));
    QTimer::singleShot(kLateMilliseconds, button, [button] { button->setDefault(true); });
  }

  // The desktop is told that the dialog is in front, and nobody answers any more.
  void hangOnceActive() {
    connect(qApp, &QGuiApplication::focusWindowChanged, this, [](QWindow* window) {
      if (window != nullptr)
        QTimer::singleShot(0, [] { raise(SIGSTOP); });
    });
    openMessage();
  }

  // Not a dialog, though Return presses a button of it.
  void openWindow() {
    auto window = std::make_unique<QWidget>();
    window->setWindowTitle("Qt window");
    auto* const layout = new QVBoxLayout(window.get());
    auto* const button = new QPushButton("Go");
    button->setDefault(true);
    layout->addWidget(button);
    fButton = button;
    show(std::move(window));
  }

  void show(std::unique_ptr<QWidget> window) {
    fWindow = std::move(window);
    fWindow->show();
  }

  std::string place() const {
    const QPoint corner = fButton->mapToGlobal(QPoint(0, 0));
    return std::to_string(corner.x()) + " " + std::to_string(corner.y()) + " " +
           std::to_string(fButton->width()) + " " + std::to_string(fButton->height());
  }

  std::unique_ptr<QWidget> fWindow;
  QWidget* fButton = nullptr;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  Dialogs dialogs;
  QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, [&] {
    std::string line;
    if (std::getline(std::cin, line))
      dialogs.obey(line);
    else
      QApplication::quit();
  });
  if (argc > 1)
    dialogs.obey(argv[1]);
  std::cout << "ready" << std::endl;
  return QApplication::exec();
}
