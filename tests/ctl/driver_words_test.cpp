#include "ctl/driver_words.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace veltrix::ctl {
namespace {

using ::testing::HasSubstr;

TEST(DriverWords, SayThatTheDriverWorks) {
  EXPECT_EQ(driverText("connected", "1.2", 0), "works, version 1.2");
}

TEST(DriverWords, SayWhyItIsNotThere) {
  for (const char* state : {"connecting", "no-outputs", "not-installed", "not-running", "other-user",
                            "replaced", "incompatible", "unused"}) {
    EXPECT_THAT(driverText(state, "", 0), ::testing::StartsWith("it ")) << state;
  }
  EXPECT_THAT(driverText("not-installed", "", 0), HasSubstr("not installed"));
  EXPECT_THAT(driverText("unreachable", "", EACCES), HasSubstr("Permission denied"));
}

TEST(DriverWords, SayWhatATrackballDoes) {
  EXPECT_EQ(driverConditionText("taken", 0), "works by its record");
  EXPECT_EQ(driverConditionText("waiting", 0), "waits until its buttons are up");
  EXPECT_EQ(driverConditionText("left-alone", 0), "an ordinary mouse");
  EXPECT_THAT(driverConditionText("busy", EBUSY), HasSubstr("another program"));
  EXPECT_EQ(driverConditionText("failed", EACCES), "cannot be used: Permission denied");
}

TEST(DriverWords, LeaveWhatTheyDoNotKnow) {
  EXPECT_EQ(driverText("dreaming", "", 0), "dreaming");
  EXPECT_EQ(driverConditionText("asleep", 0), "asleep");
}

}  // namespace
}  // namespace veltrix::ctl
