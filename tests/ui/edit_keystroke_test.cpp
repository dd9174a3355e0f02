// Keys that are typed into the action editor's keystroke field, on their way through the application.
#include <QTest>
#include <QWindow>

#include "keyboard/keystroke_capture.h"
#include "tests/support/editor_fixture.h"

namespace veltrix::testing {
namespace {

class EditKeystrokeTest : public EditControllerTest {
 public:
  EditKeystrokeTest() { VeltrixSwapNSAppMethods(controller.get()); }
  ~EditKeystrokeTest() override { VeltrixSwapNSAppMethods(nullptr); }

 protected:
  // As a key of a keyboard arrives: through the window system.
  void typeKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
    QTest::keyClick(dialog->windowHandle(), key, modifiers);
  }

  // Goes to the field of a keystroke action, does `inField`, and gives what was recorded after OK.
  plist::Dictionary record(const std::function<void()>& inField) {
    return editAction(makeDictionary({{"cmd", 10}, {"key", 255}, {"mod", 0}}), [&] {
      find("outActKeyFieldKeystroke")->setFocus();
      inField();
    });
  }

  static plist::Dictionary makeKeystroke(int key, int modifiers) {
    return makeDictionary({{"cmd", 10}, {"key", key}, {"mod", modifiers}});
  }
};

TEST_F(EditKeystrokeTest, AShortcutIsRecordedAndShown) {
  const auto after = record([&] {
    typeKey(Qt::Key_Q, Qt::MetaModifier);
    EXPECT_FALSE(text("outActKeyFieldKeystroke").isEmpty());
    EXPECT_TRUE(find<QCheckBox>("outActKeyBoxCommand")->isChecked());
  });
  EXPECT_TRUE(plist::equal(after, makeKeystroke(12, 0x0100)));
}

TEST_F(EditKeystrokeTest, TabEscapeAndReturnAreRecordedAndTheDialogStays) {
  const std::pair<Qt::Key, int> keys[] = {{Qt::Key_Tab, 48}, {Qt::Key_Escape, 53}, {Qt::Key_Return, 36}};
  for (const auto& [key, code] : keys) {
    const auto after = record([&, key = key] {
      typeKey(key);
      EXPECT_TRUE(dialog->isVisible());
      EXPECT_TRUE(find("outActKeyFieldKeystroke")->hasFocus());
    });
    EXPECT_TRUE(plist::equal(after, makeKeystroke(code, 0))) << code;
  }
}

TEST_F(EditKeystrokeTest, ALetterOfTheDialogIsRecordedAndLeadsNowhere) {
  const auto after = record([&] {
    typeKey(Qt::Key_O, Qt::AltModifier);
    EXPECT_TRUE(dialog->isVisible());
  });
  EXPECT_TRUE(plist::equal(after, makeKeystroke(31, 0x0800)));
}

TEST_F(EditKeystrokeTest, ShiftTwiceLeavesTheFieldForTheCheckBoxes) {
  const auto after = record([&] {
    typeKey(Qt::Key_F5);
    typeKey(Qt::Key_Shift);
    typeKey(Qt::Key_Shift);
    EXPECT_TRUE(find("outActKeyBoxCommand")->hasFocus());
    typeKey(Qt::Key_Space);
    EXPECT_TRUE(find<QCheckBox>("outActKeyBoxCommand")->isChecked());
  });
  EXPECT_TRUE(plist::equal(after, makeKeystroke(96, 0x0100)));
}

TEST_F(EditKeystrokeTest, OutsideTheFieldKeysDoWhatTheyUsuallyDo) {
  setAction("03", makeKeystroke(12, 0));
  EXPECT_FALSE(edit(3, [&] {
    typeKey(Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
  }));
  EXPECT_TRUE(plist::equal(action("03"), makeKeystroke(12, 0)));
}

}  // namespace
}  // namespace veltrix::testing
