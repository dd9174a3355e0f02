#include "pane/acceleration_curve.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/widget_pixels.h"

namespace veltrix {
namespace {

class AccelerationCurveTest : public ::testing::Test {
 protected:
  AccelerationCurveTest() {
    fCurve.setPalette(test::lightPalette());
    fCurve.resize(300, 200);
  }

  AccelerationCurve fCurve;
};

TEST_F(AccelerationCurveTest, IsAStraightLineWithoutAcceleration) {
  const QPointF start = fCurve.pointAt(0);
  const QPointF end = fCurve.pointAt(1);
  EXPECT_NEAR(fCurve.pointAt(0.5).y(), (start.y() + end.y()) / 2, 1e-6);
  EXPECT_EQ(start, fCurve.plotRect().bottomLeft());
}

TEST_F(AccelerationCurveTest, EndsInTheCornerForTheLargestFactor) {
  fCurve.setFactor(2.0);
  EXPECT_NEAR(fCurve.pointAt(1).y(), fCurve.plotRect().top(), 1e-6);
  fCurve.setLargestFactor(1.0);
  EXPECT_LT(fCurve.pointAt(1).y(), fCurve.plotRect().top());
}

TEST_F(AccelerationCurveTest, RisesWithTheFactor) {
  double last = fCurve.pointAt(0.6).y();
  for (const double factor : {0.25, 0.74, 1.0, 1.9}) {
    fCurve.setFactor(factor);
    EXPECT_LT(fCurve.pointAt(0.6).y(), last) << factor;
    last = fCurve.pointAt(0.6).y();
  }
}

TEST_F(AccelerationCurveTest, TakesWildFactorsAsTheNearerEnd) {
  fCurve.setFactor(9);
  EXPECT_DOUBLE_EQ(fCurve.factor(), 4.0);
  fCurve.setFactor(-1);
  EXPECT_DOUBLE_EQ(fCurve.factor(), 0.0);
  fCurve.setFactor(1);
  fCurve.setFactor(std::numeric_limits<double>::quiet_NaN());
  EXPECT_DOUBLE_EQ(fCurve.factor(), 0.0);
  fCurve.setLargestFactor(0);
  EXPECT_DOUBLE_EQ(fCurve.largestFactor(), 2.0);
}

TEST_F(AccelerationCurveTest, DrawsTheCurveInTheHighlightColour) {
  const QColor base = test::lightPalette().color(QPalette::Base);
  for (const double factor : {0.2, 1.5}) {
    fCurve.setFactor(factor);
    EXPECT_EQ(test::strongestNear(test::shot(fCurve), fCurve.pointAt(0.7), base),
              test::lightPalette().color(QPalette::Highlight));
  }
}

TEST_F(AccelerationCurveTest, IsFainterWhenDisabled) {
  fCurve.setFactor(1.5);
  const QColor base = test::lightPalette().color(QPalette::Base);
  const auto strength = [&] {
    return test::contrast(test::strongestNear(test::shot(fCurve), fCurve.pointAt(0.7), base), base);
  };
  const double enabled = strength();
  fCurve.setEnabled(false);
  EXPECT_LT(strength(), enabled * 0.8);
  EXPECT_GT(strength(), 1.2);
}

TEST_F(AccelerationCurveTest, SurvivesHavingNoRoom) {
  fCurve.setFactor(1);
  fCurve.resize(1, 1);
  const QImage image = test::shot(fCurve);
  EXPECT_EQ(image.size(), QSize(1, 1));
}

}  // namespace
}  // namespace veltrix
