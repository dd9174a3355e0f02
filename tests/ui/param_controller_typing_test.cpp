#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ui/param_controller_fixture.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;

// What is typed into the fields.
using ParamControllerTypingTest = ParamControllerTest;

TEST_F(ParamControllerTypingTest, AFieldMovesItsSliderAtEveryKey) {
  edit([this] {
    type(4, "7");
    EXPECT_EQ(slider(4)->value(), 7);
    QTest::keyClicks(field(4), QStringLiteral("5"));
    EXPECT_EQ(slider(4)->value(), 75);
  });
}

TEST_F(ParamControllerTypingTest, ALetterInAnEmptyFieldTurnsIntoZeroAtOnce) {
  EXPECT_TRUE(edit([this] {
    type(1, "x");
    EXPECT_EQ(text(1), "0");
    pressOK();
  }));
  EXPECT_THAT(stored(), ElementsAre(0, 110, 250, 90, 1));
}

TEST_F(ParamControllerTypingTest, AnEmptiedFieldShowsAZeroThatTheNextDigitReplaces) {
  edit([this] {
    field(1)->setFocus();
    field(1)->selectAll();
    QTest::keyClick(field(1), Qt::Key_Backspace);
    EXPECT_EQ(text(1), "0");
    QTest::keyClicks(field(1), QStringLiteral("42"));
    EXPECT_EQ(text(1), "42");
  });
}

TEST_F(ParamControllerTypingTest, DigitsAreTypedInTheirOrder) {
  edit([this] {
    for (const char* number : {"12", "1000", "0", "7"}) {
      type(1, number);
      EXPECT_EQ(text(1), number);
    }
    type(1, "007");
    EXPECT_EQ(text(1), "7");
    type(1, "x12y3");
    EXPECT_EQ(text(1), "123");
  });
}

TEST_F(ParamControllerTypingTest, DigitsCanBeTypedIntoTheMiddle) {
  edit([this] {
    type(1, "15");
    field(1)->setCursorPosition(1);
    QTest::keyClicks(field(1), QStringLiteral("23x"));
    EXPECT_EQ(text(1), "123");  // what stood behind the letter is gone, as it is not read
    QTest::keyClicks(field(1), QStringLiteral("4"));
    EXPECT_EQ(text(1), "1234");
  });
}

TEST_F(ParamControllerTypingTest, AMinusBeforeTheDigitsMakesTheNumberNegative) {
  EXPECT_TRUE(edit([this] {
    type(1, "5");
    QTest::keyClick(field(1), Qt::Key_Home);
    QTest::keyClicks(field(1), QStringLiteral("-1"));
    EXPECT_EQ(text(1), "-15");
    EXPECT_EQ(slider(1)->value(), slider(1)->minimum());
    QTest::keyClick(field(1), Qt::Key_Home);
    QTest::keyClick(field(1), Qt::Key_Delete);
    EXPECT_EQ(text(1), "15");
    QTest::keyClick(field(1), Qt::Key_Home);
    QTest::keyClicks(field(1), QStringLiteral("-"));
    pressOK();
  }));
  EXPECT_THAT(stored(), ElementsAre(-15, 110, 250, 90, 1));
}

TEST_F(ParamControllerTypingTest, AMinusAloneReadsAsZero) {
  edit([this] {
    type(1, "-");
    EXPECT_EQ(text(1), "0");
  });
}

TEST_F(ParamControllerTypingTest, PastedTextIsReadAsItsLeadingInteger) {
  edit([this] {
    field(1)->selectAll();
    field(1)->insert(QStringLiteral(" +37 ms"));
    EXPECT_EQ(text(1), "37");
    field(1)->setText(QStringLiteral("99999999999"));
    EXPECT_EQ(text(1), "2147483647");
  });
}

TEST_F(ParamControllerTypingTest, AChangeWithoutAFieldIsNone) {
  edit([this] {
    type(2, "5000");
    controller.controlTextDidChange(nullptr);
    EXPECT_EQ(text(2), "5000");
  });
}

TEST_F(ParamControllerTypingTest, TypingReadsAllFields) {
  EXPECT_TRUE(edit([this] {
    type(2, "5000");
    type(1, "70");
    EXPECT_EQ(text(2), "5000");
    pressOK();
  }));
  EXPECT_THAT(stored(), ElementsAre(70, 5000, 250, 90, 1));
}

}  // namespace
}  // namespace veltrix
