#include "keyboard/keystroke_field.h"

#include <gtest/gtest.h>
#include <qpa/qwindowsysteminterface.h>

#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include "keyboard/keystroke_capture.h"
#include "keystroke_recorder.h"

namespace veltrix {
namespace {

class KeystrokeFieldTest : public ::testing::Test {
 protected:
  KeystrokeFieldTest() {
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(&field);
    layout->addWidget(&next);
    window.show();
    window.activateWindow();
    field.setFocus();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    VeltrixSwapNSAppMethods(&recorder);
  }

  void TearDown() override {
    if (installed) {
      VeltrixSwapNSAppMethods(nullptr);
    }
  }

  void tap(Qt::Key key) { QTest::keyClick(window.windowHandle(), key); }

  QWidget window;
  KeystrokeField field;
  QPushButton next;
  testing::KeystrokeRecorder recorder{&field};
  bool installed = true;
};

TEST_F(KeystrokeFieldTest, TwoTapsOfAModifierMoveTheFocusOn) {
  for (const auto key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_Meta}) {
    field.setFocus();
    tap(key);
    EXPECT_TRUE(field.hasFocus()) << key;
    tap(key);
    EXPECT_TRUE(next.hasFocus()) << key;
  }
  EXPECT_TRUE(recorder.keystrokes().empty());
}

TEST_F(KeystrokeFieldTest, ARecordedKeyBetweenTwoTapsKeepsTheFocus) {
  tap(Qt::Key_Shift);
  tap(Qt::Key_A);
  tap(Qt::Key_Shift);
  EXPECT_TRUE(field.hasFocus());
  tap(Qt::Key_Shift);
  EXPECT_TRUE(next.hasFocus());
}

TEST_F(KeystrokeFieldTest, AModifierThatWasHeldForAKeystrokeIsNoTap) {
  QWindow* handle = window.windowHandle();
  tap(Qt::Key_Shift);
  QTest::keyPress(handle, Qt::Key_Shift);
  // Not by the test library, which would press Shift once more.
  QWindowSystemInterface::handleKeyEvent(handle, QEvent::KeyPress, Qt::Key_A, Qt::ShiftModifier,
                                         QStringLiteral("A"));
  QWindowSystemInterface::sendWindowSystemEvents(QEventLoop::AllEvents);
  QTest::keyRelease(handle, Qt::Key_Shift, Qt::ShiftModifier);
  tap(Qt::Key_Shift);
  EXPECT_TRUE(field.hasFocus());
  EXPECT_EQ(recorder.keystrokes().size(), 1U);
}

TEST_F(KeystrokeFieldTest, AClickBetweenTwoTapsKeepsTheFocus) {
  tap(Qt::Key_Shift);
  QTest::mouseClick(&field, Qt::LeftButton);
  tap(Qt::Key_Shift);
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(KeystrokeFieldTest, CapsLockTurnedOnAndOffKeepsTheFocus) {
  tap(Qt::Key_CapsLock);
  tap(Qt::Key_CapsLock);
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(KeystrokeFieldTest, TapsBeforeTheFocusCameDoNotCount) {
  tap(Qt::Key_Shift);
  next.setFocus();
  field.setFocus();
  tap(Qt::Key_Shift);
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(KeystrokeFieldTest, TapsMeanNothingWhileNothingIsRecorded) {
  VeltrixSwapNSAppMethods(nullptr);
  installed = false;
  tap(Qt::Key_Shift);
  tap(Qt::Key_Shift);
  EXPECT_TRUE(field.hasFocus());
}

TEST_F(KeystrokeFieldTest, ItsTextCannotBeEdited) {
  VeltrixSwapNSAppMethods(nullptr);
  installed = false;
  field.setText(QStringLiteral("Ctrl+Q"));
  QTest::keyClicks(&field, QStringLiteral("abc"));
  QTest::keyClick(&field, Qt::Key_Backspace);
  EXPECT_EQ(field.text(), "Ctrl+Q");
}

TEST_F(KeystrokeFieldTest, AnInputMethodIsNotAskedIn) {
  EXPECT_FALSE(field.testAttribute(Qt::WA_InputMethodEnabled));
  QInputMethodQueryEvent query(Qt::ImEnabled);
  QCoreApplication::sendEvent(&field, &query);
  EXPECT_FALSE(query.value(Qt::ImEnabled).toBool());
}

TEST_F(KeystrokeFieldTest, ThereIsNoContextMenu) {
  QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), field.mapToGlobal(QPoint(1, 1)));
  QCoreApplication::sendEvent(&field, &event);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(KeystrokeFieldTest, ItSaysWhatToDoAndHowToLeave) {
  EXPECT_FALSE(field.placeholderText().isEmpty());
  EXPECT_EQ(field.accessibleDescription(), KeystrokeField::kLeaveHint);
}

// There is no desktop to take keys from.
TEST_F(KeystrokeFieldTest, WithoutADesktopNothingIsTaken) {
  QCoreApplication::processEvents();
  EXPECT_EQ(field.grabState(), KeystrokeGrab::State::kNone);
}

}  // namespace
}  // namespace veltrix
