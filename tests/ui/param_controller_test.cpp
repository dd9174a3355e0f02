#include "editor/param_controller.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "tests/ui/param_controller_fixture.h"

namespace veltrix {
namespace {

using plist::Dictionary;
using ::testing::ElementsAre;

TEST_F(ParamControllerTest, EachRowShowsItsValueInSliderAndField) {
  edit([this] {
    const std::array values = {60, 110, 250, 90, 1};
    for (int row = 1; row <= 5; ++row) {
      EXPECT_EQ(slider(row)->value(), values[static_cast<std::size_t>(row) - 1]) << row;
      EXPECT_EQ(text(row), std::to_string(values[static_cast<std::size_t>(row) - 1])) << row;
    }
  });
  EXPECT_EQ(host.dialogs, 1);
}

TEST_F(ParamControllerTest, AnEntryWithoutParametersOpensNothing) {
  entry.remove("param");
  EXPECT_FALSE(edit([] {}));
  entry.set("param", "text");
  EXPECT_FALSE(edit([] {}));
  EXPECT_FALSE(controller.editScrollParams(Dictionary()));
  EXPECT_EQ(host.dialogs, 0);
  EXPECT_EQ(entry.stringFor("param"), "text");
}

TEST_F(ParamControllerTest, OKReplacesTheParametersOfTheEntry) {
  const Dictionary before = param();
  EXPECT_TRUE(edit([this] {
    type(3, "300");
    pressOK();
  }));
  EXPECT_FALSE(param().sameAs(before));
  EXPECT_EQ(before.int32For("timeStop"), 250);
  EXPECT_THAT(stored(), ElementsAre(60, 110, 300, 90, 1));
}

TEST_F(ParamControllerTest, CancelLeavesTheEntryAsItWas) {
  const Dictionary before = param();
  EXPECT_FALSE(edit([this] {
    type(3, "300");
    press(QDialogButtonBox::Cancel);
  }));
  EXPECT_TRUE(param().sameAs(before));
  EXPECT_THAT(stored(), ElementsAre(60, 110, 250, 90, 1));
}

TEST_F(ParamControllerTest, NothingReachesTheEntryBeforeOK) {
  edit([this] {
    type(3, "300");
    slider(1)->setValue(80);
    EXPECT_THAT(stored(), ElementsAre(60, 110, 250, 90, 1));
  });
}

TEST_F(ParamControllerTest, ASecondOpeningShowsTheEntryAgain) {
  edit([this] { type(3, "300"); });
  edit([this] { EXPECT_EQ(text(3), "250"); });
}

TEST_F(ParamControllerTest, AMissingParameterShowsZeroAndIsStoredAsZero) {
  param().remove("timeStop");
  EXPECT_TRUE(edit([this] {
    EXPECT_EQ(text(3), "0");
    EXPECT_EQ(slider(3)->value(), slider(3)->minimum());
    pressOK();
  }));
  EXPECT_TRUE(param().contains("timeStop"));
  EXPECT_THAT(stored(), ElementsAre(60, 110, 0, 90, 1));
}

TEST_F(ParamControllerTest, OtherKeysAreKept) {
  Dictionary further = Dictionary::create();
  further.set("x", 1);
  param().set("further", further);
  EXPECT_TRUE(edit([this] {
    type(1, "70");
    pressOK();
  }));
  EXPECT_EQ(param().dictionaryFor("further").int32For("x"), 1);
  EXPECT_FALSE(param().dictionaryFor("further").sameAs(further));
}

TEST_F(ParamControllerTest, ANumberAboveTheSlidersEndStaysWhileTheSliderRestsThere) {
  EXPECT_TRUE(edit([this] {
    type(2, "5000");
    EXPECT_EQ(text(2), "5000");
    EXPECT_EQ(slider(2)->value(), slider(2)->maximum());
    pressOK();
  }));
  EXPECT_THAT(stored(), ElementsAre(60, 5000, 250, 90, 1));
}

TEST_F(ParamControllerTest, MovingAnySliderBringsTypedNumbersBackToTheSlidersEnd) {
  EXPECT_TRUE(edit([this] {
    type(2, "5000");
    slider(1)->setFocus();
    QTest::keyClick(slider(1), Qt::Key_Right);
    EXPECT_EQ(text(2), std::to_string(slider(2)->maximum()));
    pressOK();
  }));
  EXPECT_THAT(stored(), ElementsAre(65, 300, 250, 90, 1));
}

TEST_F(ParamControllerTest, OpeningWithAValueBeyondASliderChangesNothing) {
  param().set("timeDecay", 5000);
  param().set("countStop", -3);
  EXPECT_TRUE(edit([this] {
    EXPECT_EQ(text(2), "5000");
    EXPECT_EQ(text(5), "-3");
    pressOK();
  }));
  EXPECT_THAT(stored(), ElementsAre(60, 5000, 250, 90, -3));
}

TEST_F(ParamControllerTest, ASliderMovesItsField) {
  EXPECT_TRUE(edit([this] {
    slider(4)->setFocus();
    QTest::keyClick(slider(4), Qt::Key_Home);
    EXPECT_EQ(text(4), "0");
    pressOK();
  }));
  EXPECT_THAT(stored(), ElementsAre(60, 110, 250, 0, 1));
}

TEST_F(ParamControllerTest, SendersWithOtherTagsThanOneToSixDoNotCount) {
  edit([this] {
    type(2, "5000");
    QObject sender;
    for (const int tag : {-1, 0, 7, 71}) {
      sender.setProperty("tag", tag);
      controller.actUpdateSettings(&sender);
      EXPECT_EQ(text(2), "5000") << tag;
    }
    QObject untagged;
    controller.actUpdateSettings(&untagged);
    controller.actUpdateSettings(nullptr);
    EXPECT_EQ(text(2), "5000");
  });
}

TEST_F(ParamControllerTest, TagsOneToSixReadAllSliders) {
  edit([this] {
    QObject sender;
    for (int tag = 1; tag <= 6; ++tag) {
      type(2, "5000");
      sender.setProperty("tag", tag);
      controller.actUpdateSettings(&sender);
      EXPECT_EQ(text(2), "300") << tag;
    }
  });
}

TEST_F(ParamControllerTest, SlidersCarryTheTagsOneToFive) {
  edit([this] {
    for (int row = 1; row <= 5; ++row) {
      EXPECT_EQ(slider(row)->property("tag").toInt(), row);
    }
  });
}

TEST_F(ParamControllerTest, ReturnConfirmsAndEscapeCancels) {
  EXPECT_TRUE(edit([this] {
    type(1, "70");
    QTest::keyClick(field(1), Qt::Key_Return);
  }));
  EXPECT_FALSE(edit([this] {
    type(1, "80");
    QTest::keyClick(field(1), Qt::Key_Escape);
  }));
  EXPECT_THAT(stored(), ElementsAre(70, 110, 250, 90, 1));
}

TEST_F(ParamControllerTest, TabsGoFromRowToRowAndThenToTheButtons) {
  edit([this] {
    EXPECT_TRUE(slider(1)->hasFocus());
    for (int row = 1; row <= 5; ++row) {
      EXPECT_TRUE(slider(row)->hasFocus()) << row;
      QTest::keyClick(slider(row), Qt::Key_Tab);
      EXPECT_TRUE(field(row)->hasFocus()) << row;
      EXPECT_EQ(field(row)->selectedText(), field(row)->text());
      QTest::keyClick(field(row), Qt::Key_Tab);
    }
    EXPECT_NE(qobject_cast<QPushButton*>(QApplication::focusWidget()), nullptr);
  });
}

TEST_F(ParamControllerTest, EveryControlSaysWhatItIs) {
  edit([this] {
    for (int row = 1; row <= 5; ++row) {
      EXPECT_EQ(find<QLabel>("labelParam" + std::to_string(row))->buddy(), slider(row));
      EXPECT_FALSE(slider(row)->accessibleName().isEmpty());
      EXPECT_EQ(field(row)->accessibleName(), slider(row)->accessibleName());
    }
  });
}

TEST_F(ParamControllerTest, TheWheelMovesOnlyTheSliderThatIsInUse) {
  edit([this] {
    const auto turn = [](QSlider* over) {
      const QPointF middle = over->rect().center();
      QWheelEvent event(middle, over->mapToGlobal(middle), QPoint(), QPoint(0, 120), Qt::NoButton,
                        Qt::NoModifier, Qt::NoScrollPhase, false);
      QApplication::sendEvent(over, &event);
    };
    slider(1)->setFocus();
    turn(slider(2));
    EXPECT_EQ(slider(2)->value(), 110);
    turn(slider(1));
    EXPECT_GT(slider(1)->value(), 60);
  });
}

}  // namespace
}  // namespace veltrix
