// An editor that tells what it reads. Prints a line for each change: "text " and the whole text as JSON; for
// each key that goes down "key NANOSECONDS keycode NUMBER" and "shortcut " with its name; "copy" when the
// keys for that are pressed, "close" when it is asked to close, "focus" when it gets the keys.
#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <cstdio>
#include <ctime>

namespace {

class Reader final : public QPlainTextEdit {
 public:
  Reader() {
    setWindowTitle("reader");
    setTabChangesFocus(false);
    setUndoRedoEnabled(false);
    setLineWrapMode(NoWrap);
    connect(this, &QPlainTextEdit::textChanged, this, [this] {
      const QJsonArray text{toPlainText()};
      print("text " + QJsonDocument(text).toJson(QJsonDocument::Compact));
    });
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    print("key " + QByteArray::number(now.tv_sec * 1'000'000'000LL + now.tv_nsec) + " keycode " +
          QByteArray::number(event->nativeScanCode()));
    print("shortcut " + QKeySequence(event->keyCombination()).toString(QKeySequence::PortableText).toUtf8());
    if (event->matches(QKeySequence::Copy))
      print("copy");
    // The keys are enough: what they would do here is not what is tested, and may take its time.
    if ((event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0)
      QPlainTextEdit::keyPressEvent(event);
  }
  void contextMenuEvent(QContextMenuEvent* /*event*/) override { print("menu"); }
  void focusInEvent(QFocusEvent* event) override {
    QPlainTextEdit::focusInEvent(event);
    print("focus");
  }
  void closeEvent(QCloseEvent* event) override {
    print("close");
    event->accept();
  }

 private:
  static void print(const QByteArray& line) {
    std::puts(line.constData());
    std::fflush(stdout);
  }
};

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  Reader reader;
  reader.resize(600, 400);
  reader.show();
  return QApplication::exec();
}
