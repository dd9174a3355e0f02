#include "widgets/callout_layout.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace veltrix {
namespace {

constexpr int kSpacing = 10;
constexpr QSizeF kPicture{120, 110};
constexpr QSize kCaption{90, 16};
constexpr QSize kControl{150, 26};

CalloutRequest callout(int number, CalloutSide side, double height) {
  return {number, side, height, kCaption, kControl};
}

QList<CalloutRequest> fourButtonsAndTwoChords() {
  return {callout(0, CalloutSide::kLeft, 0.7),   callout(1, CalloutSide::kRight, 0.7),
          callout(2, CalloutSide::kLeft, 0.3),   callout(3, CalloutSide::kRight, 0.3),
          callout(8, CalloutSide::kBottom, 0.7), callout(9, CalloutSide::kTop, 0.3)};
}

QList<QRect> boxes(const CalloutLayout& layout) {
  QList<QRect> result;
  for (const CalloutPlace& place : layout.places) {
    result << place.caption << place.control;
  }
  return result;
}

void expectApartAndInside(const CalloutLayout& layout, const QRect& area) {
  const QList<QRect> all = boxes(layout) << layout.picture;
  for (qsizetype i = 0; i < all.size(); ++i) {
    EXPECT_TRUE(area.contains(all[i])) << i;
    for (qsizetype k = i + 1; k < all.size(); ++k) {
      EXPECT_FALSE(all[i].intersects(all[k])) << i << " " << k;
    }
  }
}

TEST(CalloutLayout, KeepsEverythingApartFromTheSmallestSizeOn) {
  const auto requests = fourButtonsAndTwoChords();
  const QSize least = calloutSize({120, 110}, requests, kSpacing);
  for (const QSize& size : {least, least + QSize(37, 5), QSize(760, 420), QSize(2000, 1200)}) {
    const QRect area(QPoint(5, 7), size);
    const CalloutLayout layout = placeCallouts(area, kPicture, requests, kSpacing);
    expectApartAndInside(layout, area);
    EXPECT_GE(layout.picture.width(), 120);
    EXPECT_GE(layout.picture.height(), 110);
  }
}

TEST(CalloutLayout, PutsTheControlAtTheHeightOfItsTarget) {
  const CalloutLayout layout =
      placeCallouts(QRect(0, 0, 760, 420), kPicture, fourButtonsAndTwoChords(), kSpacing);
  const double target = layout.picture.top() + 0.7 * layout.picture.height();
  EXPECT_NEAR(layout.places[0].control.center().y(), target, 1.5);
  EXPECT_EQ(layout.places[0].control.y(), layout.places[1].control.y());
}

TEST(CalloutLayout, PutsTheCaptionAboveItsControl) {
  const CalloutLayout layout =
      placeCallouts(QRect(0, 0, 760, 420), kPicture, fourButtonsAndTwoChords(), kSpacing);
  for (const CalloutPlace& place : layout.places) {
    EXPECT_LT(place.caption.bottom(), place.control.top());
    EXPECT_EQ(place.caption.left(), place.control.left());
  }
}

TEST(CalloutLayout, AnswersInTheOrderOfTheRequests) {
  const auto requests = fourButtonsAndTwoChords();
  const CalloutLayout layout = placeCallouts(QRect(0, 0, 760, 420), kPicture, requests, kSpacing);
  for (qsizetype i = 0; i < requests.size(); ++i) {
    EXPECT_EQ(layout.places[i].number, requests[i].number);
  }
  EXPECT_LT(layout.places[2].caption.y(), layout.places[0].caption.y());
}

TEST(CalloutLayout, PushesCalloutsOfOneHeightApart) {
  const QList<CalloutRequest> requests{callout(0, CalloutSide::kLeft, 0.95),
                                       callout(2, CalloutSide::kLeft, 0.95),
                                       callout(1, CalloutSide::kLeft, 0.95)};
  expectApartAndInside(placeCallouts(QRect(0, 0, 600, 240), kPicture, requests, kSpacing),
                       QRect(0, 0, 600, 240));
}

TEST(CalloutLayout, GivesThePictureAllWithoutCallouts) {
  EXPECT_EQ(placeCallouts(QRect(3, 4, 50, 60), QSizeF(), {}, kSpacing).picture, QRect(3, 4, 50, 60));
}

TEST(CalloutLayout, KeepsThePicturesProportions) {
  const QRect picture = placeCallouts(QRect(0, 0, 1200, 90), kPicture, {}, kSpacing).picture;
  EXPECT_EQ(picture.height(), 90);
  EXPECT_NEAR(picture.width(), 90 * 120 / 110.0, 1);
  EXPECT_NEAR(picture.center().x(), 600, 1);
}

TEST(CalloutLayout, LetsACaptionBeWiderThanThePicture) {
  auto requests = fourButtonsAndTwoChords();
  requests[4].caption = QSize(220, 16);
  const CalloutLayout layout = placeCallouts(QRect(0, 0, 700, 260), kPicture, requests, kSpacing);
  EXPECT_LT(layout.picture.width(), 220);
  EXPECT_EQ(layout.places[4].caption.width(), 220);
}

RC_GTEST_PROP(CalloutLayout, LeavesThePictureAThirdOfTheWidth, ()) {
  auto requests = fourButtonsAndTwoChords();
  for (CalloutRequest& request : requests) {
    request.control.setWidth(*rc::gen::inRange(1, 3000));
  }
  const int width = *rc::gen::inRange(300, 3000);
  const CalloutLayout layout = placeCallouts(QRect(0, 0, width, 600), QSizeF(), requests, kSpacing);
  RC_ASSERT(layout.picture.width() + 4 * kSpacing >= width / 3);
}

}  // namespace
}  // namespace veltrix
