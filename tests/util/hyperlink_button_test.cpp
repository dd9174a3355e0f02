#include "util/hyperlink_button.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include "tests/support/widget_pixels.h"

namespace veltrix {
namespace {

class HyperlinkButton : public ::testing::Test {
 protected:
  HyperlinkButton() {
    auto* layout = new QVBoxLayout(&fWindow);
    button = new VeltrixHyperlinkButton;
    other = new QPushButton("Other");
    layout->addWidget(button);
    layout->addWidget(other);
    button->setText("Web site");
    setPalette(test::lightPalette());
    fWindow.show();
    fWindow.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&fWindow));
    other->setFocus();
  }

  void setPalette(const QPalette& palette) {
    fWindow.setPalette(palette);
    ground = palette.color(QPalette::Window);
  }

  // The share of pixels that lean towards red by more than they lean towards blue, or the other way round.
  double reddish() const {
    return share([](const QColor& color) { return color.red() - color.blue() > 80; });
  }
  double bluish() const {
    return share([](const QColor& color) { return color.blue() - color.red() > 80; });
  }

  VeltrixHyperlinkButton* button;
  QPushButton* other;
  QColor ground;

 private:
  double share(bool (*fits)(const QColor&)) const {
    const QImage image = test::shot(*button);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        count += fits(image.pixelColor(x, y)) ? 1 : 0;
      }
    }
    return static_cast<double>(count) / (image.width() * image.height());
  }

  QWidget fWindow;
};

TEST_F(HyperlinkButton, TitlesAreLinksMadeOfItsText) {
  EXPECT_EQ(button->attributedTitle().text, "Web site");
  EXPECT_EQ(button->attributedTitle().color, makeHyperlink("Web site", false).color);
  EXPECT_EQ(button->attributedAlternateTitle().color, makeHyperlink("Web site", true).color);
  button->setText("Support");
  EXPECT_EQ(button->attributedTitle().link, "Support");
}

TEST_F(HyperlinkButton, IsBlueAndRedWhilePressed) {
  EXPECT_GT(bluish(), 0.05);
  EXPECT_EQ(reddish(), 0);
  QTest::mousePress(button, Qt::LeftButton);
  EXPECT_GT(reddish(), 0.05);
  EXPECT_EQ(bluish(), 0);
  QTest::mouseRelease(button, Qt::LeftButton);
  EXPECT_GT(bluish(), 0.05);
}

TEST_F(HyperlinkButton, CanBeReadInADarkWindow) {
  QPalette palette = test::darkPalette();
  palette.setColor(QPalette::Light, test::darkPalette().color(QPalette::Window).lighter(180));
  setPalette(palette);
  EXPECT_GT(test::shareAgainst(test::shot(*button), ground, 4.0), 0.02);
  // On the page of a tab, too.
  EXPECT_GT(test::shareAgainst(test::shot(*button), palette.color(QPalette::Light), 4.0), 0.02);
}

TEST_F(HyperlinkButton, IsGrayWhileDisabled) {
  button->setEnabled(false);
  EXPECT_EQ(bluish(), 0);
}

TEST_F(HyperlinkButton, MouseSpaceAndReturnPressIt) {
  const QSignalSpy clicks(button, &QAbstractButton::clicked);
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(clicks.count(), 1);
  button->setFocus();
  QTest::keyClick(button, Qt::Key_Space);
  EXPECT_EQ(clicks.count(), 2);
  QTest::keyClick(button, Qt::Key_Return);
  EXPECT_EQ(clicks.count(), 3);
  QTest::keyClick(button, Qt::Key_Enter);
  EXPECT_EQ(clicks.count(), 4);
}

TEST_F(HyperlinkButton, IsReachedByTabAndShowsTheFocus) {
  const QImage without = test::shot(*button);
  QTest::keyClick(other, Qt::Key_Tab);
  ASSERT_TRUE(button->hasFocus());
  EXPECT_GT(test::shareAgainst(test::shot(*button), ground, 1.5), test::shareAgainst(without, ground, 1.5));
}

TEST_F(HyperlinkButton, HasTheHandOfALinkAndTheSizeOfItsText) {
  EXPECT_EQ(button->cursor().shape(), Qt::PointingHandCursor);
  const int before = button->sizeHint().width();
  button->setText("A much longer title of the same button");
  EXPECT_GT(button->sizeHint().width(), 2 * before);
}

}  // namespace
}  // namespace veltrix
