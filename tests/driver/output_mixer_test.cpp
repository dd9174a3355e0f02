#include "driver/output_mixer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/driver/driver_fakes.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class OutputMixerTest : public ::testing::Test {
 protected:
  int write(const std::vector<OutputEvent>& events) { return mixer.write(events); }

  FakeSink sink;
  OutputMixer mixer{sink};
};

TEST_F(OutputMixerTest, WhatTwoHoldGoesUpWithTheLast) {
  write({keyEvent(BTN_LEFT, true), kSync});
  write({keyEvent(BTN_LEFT, true), kSync});
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_LEFT, true), kSync));
  write({keyEvent(BTN_LEFT, false), kSync});
  EXPECT_THAT(sink.take(), IsEmpty());
  write({keyEvent(BTN_LEFT, false), kSync});
  EXPECT_THAT(sink.take(), ElementsAre(keyEvent(BTN_LEFT, false), kSync));
}

TEST_F(OutputMixerTest, OnlyWhatChangesNothingIsLeftOut) {
  write({keyEvent(BTN_LEFT, true), kSync});
  sink.take();
  write({keyEvent(BTN_LEFT, true), relativeEvent(REL_X, 2), kSync, keyEvent(BTN_LEFT, true), kSync,
         keyEvent(KEY_A, true), kSync});
  EXPECT_THAT(sink.take(), ElementsAre(relativeEvent(REL_X, 2), kSync, keyEvent(KEY_A, true), kSync));
}

TEST_F(OutputMixerTest, ReleasesOfWhatNobodyHoldsAreLeftOut) {
  write({keyEvent(BTN_LEFT, true), kSync});
  mixer.forget();
  sink.take();
  write({keyEvent(BTN_LEFT, false), kSync});
  EXPECT_THAT(sink.take(), IsEmpty());
}

TEST_F(OutputMixerTest, TellsThatNothingCanBeWritten) {
  sink.writeError = ENODEV;
  EXPECT_EQ(write({relativeEvent(REL_X, 1), kSync}), ENODEV);
  EXPECT_EQ(write({}), 0);
}

}  // namespace
}  // namespace veltrix
