#include "keyboard/keystroke_application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <qpa/qwindowsysteminterface.h>

#include <QAction>
#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <stdexcept>

#include "keyboard/keystroke_capture.h"
#include "keyboard/keystroke_field.h"
#include "keystroke_recorder.h"
#include "settings/modifier_mask.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

auto isKey(int keyCode, int modifiers) {
  return ::testing::AllOf(Field(&Keystroke::keyCode, keyCode), Field(&Keystroke::modifiers, modifiers));
}

class EventLog : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::KeyRelease || event->type() == QEvent::KeyPress) {
      types.append(event->type());
    }
    return QObject::eventFilter(watched, event);
  }
  QList<QEvent::Type> types;
};

// A dialog that quits with Ctrl+Q, closes with Escape, and has a field between two buttons.
class KeystrokeApplicationTest : public ::testing::Test {
 protected:
  KeystrokeApplicationTest() {
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(&before);
    layout->addWidget(&field);
    layout->addWidget(&after);
    after.setDefault(true);
    QObject::connect(&after, &QPushButton::clicked, &dialog, [this] { ++clicked; });
    quit.setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    QObject::connect(&quit, &QAction::triggered, &dialog, [this] { ++quitted; });
    dialog.addAction(&quit);
    dialog.show();
    dialog.activateWindow();
    field.setFocus();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    VeltrixSwapNSAppMethods(&recorder);
  }

  void TearDown() override {
    if (installed) {
      VeltrixSwapNSAppMethods(nullptr);
    }
  }

  // As a key of a keyboard arrives: through the window system, shortcuts first.
  void type(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(dialog.windowHandle(), key, modifiers);
  }

  void pressNative(std::uint32_t evdevCode, int key, const QString& text, std::uint32_t nativeModifiers,
                   Qt::KeyboardModifiers modifiers = Qt::NoModifier, bool isAutoRepeat = false) {
    QWindowSystemInterface::handleExtendedKeyEvent(dialog.windowHandle(), QEvent::KeyPress, key, modifiers,
                                                   evdevCode + 8, 0, nativeModifiers, text, isAutoRepeat);
    QWindowSystemInterface::sendWindowSystemEvents(QEventLoop::AllEvents);
  }

  void remove() {
    VeltrixSwapNSAppMethods(nullptr);
    installed = false;
  }

  QDialog dialog;
  QPushButton before;
  KeystrokeField field;
  QPushButton after;
  QAction quit;
  int clicked = 0;
  int quitted = 0;
  bool installed = true;
  testing::KeystrokeRecorder recorder{&field};
};

TEST_F(KeystrokeApplicationTest, ControlQIsRecordedAndDoesNotQuit) {
  type(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_THAT(recorder.keystrokes(), ElementsAre(isKey(12, kControlModifier)));
  EXPECT_EQ(quitted, 0);
}

TEST_F(KeystrokeApplicationTest, CommandQIsRecordedWithMask0100AndDoesNotQuit) {
  quit.setShortcut(QKeySequence(Qt::META | Qt::Key_Q));
  type(Qt::Key_Q, Qt::MetaModifier);
  EXPECT_THAT(recorder.keystrokes(), ElementsAre(isKey(12, 0x0100)));
  EXPECT_EQ(quitted, 0);
}

TEST_F(KeystrokeApplicationTest, TabAndEscapeAreRecordedAndDoNothingElse) {
  type(Qt::Key_Tab);
  type(Qt::Key_Backtab, Qt::ShiftModifier);
  type(Qt::Key_Escape);
  EXPECT_THAT(recorder.keystrokes(), ElementsAre(isKey(48, 0), isKey(48, kShiftModifier), isKey(53, 0)));
  EXPECT_TRUE(field.hasFocus());
  EXPECT_TRUE(dialog.isVisible());
}

TEST_F(KeystrokeApplicationTest, ReturnIsRecordedAndPressesNoButton) {
  type(Qt::Key_Return);
  type(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_THAT(recorder.keystrokes(), ElementsAre(isKey(36, 0), isKey(76, 0)));
  EXPECT_EQ(clicked, 0);
}

TEST_F(KeystrokeApplicationTest, AltF4IsRecorded) {
  type(Qt::Key_F4, Qt::AltModifier);
  EXPECT_THAT(recorder.keystrokes(), ElementsAre(isKey(118, kOptionModifier)));
  EXPECT_TRUE(dialog.isVisible());
}

TEST_F(KeystrokeApplicationTest, EveryLetterWithMetaIsRecordedOnce) {
  for (int key = Qt::Key_A; key <= Qt::Key_Z; ++key) {
    type(static_cast<Qt::Key>(key), Qt::MetaModifier);
    ASSERT_EQ(recorder.keystrokes().size(), static_cast<std::size_t>(key - Qt::Key_A + 1));
    EXPECT_EQ(recorder.keystrokes().back().modifiers, kCommandModifier);
  }
}

TEST_F(KeystrokeApplicationTest, AKeyForTheWidgetItselfIsRecordedOnceToo) {
  QTest::keyClick(&field, Qt::Key_A);
  ASSERT_THAT(recorder.keystrokes(), ElementsAre(isKey(0, 0)));
  EXPECT_EQ(recorder.keystrokes().front().character, u'a');
}

TEST_F(KeystrokeApplicationTest, ShiftWithCapsLockIs0600AndCapsLockAlone0400) {
  pressNative(KEY_A, Qt::Key_A, QStringLiteral("a"), 0x03, Qt::ShiftModifier);
  pressNative(KEY_A, Qt::Key_A, QStringLiteral("A"), 0x02);
  EXPECT_THAT(recorder.keystrokes(), ElementsAre(isKey(0, 0x0600), isKey(0, 0x0400)));
}

TEST_F(KeystrokeApplicationTest, AKeyWithoutCharactersIsRecordedWithCharacter0) {
  pressNative(KEY_EQUAL, Qt::Key_Dead_Acute, QString(), 0);
  EXPECT_THAT(recorder.keystrokes(), ElementsAre(Keystroke{24, 0, 0}));
}

TEST_F(KeystrokeApplicationTest, AKeyWithoutACodeVanishes) {
  pressNative(KEY_PLAYPAUSE, Qt::Key_MediaTogglePlayPause, QString(), 0);
  EXPECT_THAT(recorder.keystrokes(), IsEmpty());
}

TEST_F(KeystrokeApplicationTest, AHeldKeyIsRecordedOnceAndDoesNothingElse) {
  pressNative(KEY_TAB, Qt::Key_Tab, QString(), 0);
  pressNative(KEY_TAB, Qt::Key_Tab, QString(), 0, Qt::NoModifier, true);
  pressNative(KEY_TAB, Qt::Key_Tab, QString(), 0, Qt::NoModifier, true);
  EXPECT_THAT(recorder.keystrokes(), ElementsAre(isKey(48, 0)));
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(KeystrokeApplicationTest, KeyReleasesAndModifiersPass) {
  EventLog log;
  field.installEventFilter(&log);
  type(Qt::Key_A);
  EXPECT_THAT(log.types, ElementsAre(QEvent::KeyRelease));
  type(Qt::Key_Control);
  EXPECT_THAT(log.types, ElementsAre(QEvent::KeyRelease, QEvent::KeyPress, QEvent::KeyRelease));
  EXPECT_THAT(recorder.keystrokes(), ElementsAre(isKey(0, 0)));
}

TEST_F(KeystrokeApplicationTest, KeysBehaveNormallyWhileTheFieldIsNotEdited) {
  before.setFocus();
  type(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(quitted, 1);
  type(Qt::Key_Tab);
  EXPECT_TRUE(field.hasFocus());
  after.setFocus();
  type(Qt::Key_Escape);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_THAT(recorder.keystrokes(), IsEmpty());
}

TEST_F(KeystrokeApplicationTest, KeysBehaveNormallyInAnotherWindow) {
  QLineEdit other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  QTest::keyClick(other.windowHandle(), Qt::Key_X);
  EXPECT_EQ(other.text(), "x");
  EXPECT_THAT(recorder.keystrokes(), IsEmpty());
}

TEST_F(KeystrokeApplicationTest, AfterRemovalKeysBehaveNormally) {
  remove();
  type(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(quitted, 1);
  type(Qt::Key_Tab);
  EXPECT_TRUE(after.hasFocus());
  EXPECT_THAT(recorder.keystrokes(), IsEmpty());
}

TEST_F(KeystrokeApplicationTest, InstallingTwiceRestoresTheUsualWay) {
  VeltrixSwapNSAppMethods(&recorder);
  installed = false;
  EXPECT_FALSE(KeystrokeApplication::isCapturing());
  type(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(quitted, 1);
  EXPECT_THAT(recorder.keystrokes(), IsEmpty());
}

// The third call exchanges again; with no receiver everything passes through the exchanged methods.
TEST_F(KeystrokeApplicationTest, RemovingAfterInstallingTwiceLeavesTheMethodsExchanged) {
  VeltrixSwapNSAppMethods(&recorder);
  VeltrixSwapNSAppMethods(nullptr);
  type(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(quitted, 1);
  EXPECT_THAT(recorder.keystrokes(), IsEmpty());
  VeltrixSwapNSAppMethods(&recorder);
  VeltrixSwapNSAppMethods(&recorder);
  type(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_EQ(quitted, 1);
  EXPECT_THAT(recorder.keystrokes(), ElementsAre(isKey(12, kControlModifier)));
}

TEST_F(KeystrokeApplicationTest, EveryExchangeIsAnnounced) {
  int announced = 0;
  auto* application = qobject_cast<KeystrokeApplication*>(QCoreApplication::instance());
  ASSERT_NE(application, nullptr);
  QObject::connect(application, &KeystrokeApplication::captureChanged, &dialog,
                   [&announced] { ++announced; });
  remove();
  EXPECT_EQ(announced, 1);
}

TEST_F(KeystrokeApplicationTest, ExchangingSaysTrueWhateverItIsGiven) {
  const KeystrokeApplication::Methods usual = KeystrokeApplication::methods();
  KeystrokeApplication::Methods methods = usual;
  EXPECT_TRUE(
      SwapObjCMethods(methods, KeystrokeApplication::kSendEvent, KeystrokeApplication::kSelectorCount));
  EXPECT_TRUE(SwapObjCMethods(methods, 99, KeystrokeApplication::kSendEvent));
  EXPECT_EQ(methods, usual);
  EXPECT_TRUE(SwapObjCMethods(methods, KeystrokeApplication::kSendEvent,
                              KeystrokeApplication::kPerformKeyXRAppPatch));
  EXPECT_EQ(methods[KeystrokeApplication::kSendEvent], usual[KeystrokeApplication::kPerformKeyXRAppPatch]);
  EXPECT_EQ(methods[KeystrokeApplication::kPerformKeyXRAppPatch], usual[KeystrokeApplication::kSendEvent]);
}

TEST_F(KeystrokeApplicationTest, AKeyWithoutAReceiverIsNotHandedOn) {
  remove();
  VeltrixSendKeystrokeToField(QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier));
  EXPECT_THAT(recorder.keystrokes(), IsEmpty());
}

TEST_F(KeystrokeApplicationTest, AShortcutThatIsUnderWayIsSwallowed) {
  QShortcutEvent shortcut(quit.shortcut(), 0);
  EXPECT_TRUE(QCoreApplication::sendEvent(&quit, &shortcut));
  EXPECT_EQ(quitted, 0);
}

class ThrowingReceiver : public KeystrokeReceiver {
 public:
  bool vtxOverrideKeysIsActive() const override { return true; }
  void vtxReceiveKeystroke(std::uint8_t /*keyCode*/, char16_t /*withCharacter*/,
                           std::uint16_t /*andModifiers*/) override {
    ++calls;
    throw std::runtime_error("no room");
  }
  int calls = 0;
};

TEST_F(KeystrokeApplicationTest, NoExceptionLeavesAndTheKeyDoesNothingElse) {
  remove();
  ThrowingReceiver receiver;
  VeltrixSwapNSAppMethods(&receiver);
  EXPECT_NO_THROW(type(Qt::Key_Tab));
  VeltrixSwapNSAppMethods(nullptr);
  EXPECT_EQ(receiver.calls, 1);
  EXPECT_TRUE(field.hasFocus());
}

}  // namespace
}  // namespace veltrix
