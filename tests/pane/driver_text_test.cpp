#include "pane/driver_text.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <set>

namespace veltrix {
namespace {

using ::testing::HasSubstr;

std::string asItStands(const char* key) {
  return key;
}

DriverStatus statusOf(const std::string& state) {
  DriverStatus status;
  status.helperRuns = true;
  status.state = state;
  return status;
}

DriverStatus withDevice(const std::string& condition, int error = 0) {
  DriverStatus status = statusOf("connected");
  status.devices.push_back(
      {.vendor = 0xA1D0, .product = 0x1020, .version = 0x0102, .condition = condition, .error = error});
  return status;
}

constexpr const char* kReasons[] = {"no-outputs", "not-installed", "not-running", "other-user",
                                    "replaced",   "incompatible",  "unreachable"};

TEST(DriverText, PromisesOnlyWhatADriverAtWorkDoes) {
  EXPECT_THAT(driverHeadline(statusOf("connected"), asItStands), HasSubstr("do what you set"));
  EXPECT_EQ(changesText(statusOf("connected"), asItStands), "Every change takes effect at once.");
  for (const char* reason : kReasons) {
    EXPECT_THAT(driverHeadline(statusOf(reason), asItStands), HasSubstr("ordinary mice")) << reason;
    EXPECT_THAT(changesText(statusOf(reason), asItStands), HasSubstr("as soon as the driver works"))
        << reason;
  }
}

TEST(DriverText, HasAnExplanationForEachReason) {
  std::set<std::string> texts;
  for (const char* reason : kReasons) {
    DriverStatus status = statusOf(reason);
    status.error = EACCES;
    texts.insert(driverExplanation(status, asItStands));
  }
  EXPECT_EQ(texts.size(), std::size(kReasons));
}

TEST(DriverText, NamesVersionAndError) {
  DriverStatus status = statusOf("connected");
  status.version = "1.2.3";
  EXPECT_EQ(driverExplanation(status, asItStands), "The driver works, version 1.2.3.");
  status = statusOf("unreachable");
  status.error = EACCES;
  EXPECT_EQ(driverExplanation(status, asItStands), "The driver cannot be reached: Permission denied.");
}

TEST(DriverText, SaysNothingOfWhatNobodyHasTold) {
  for (const auto& status : {std::optional<DriverStatus>(), std::optional(statusOf("connecting")),
                             std::optional(statusOf("")), std::optional(statusOf("of a later version"))}) {
    EXPECT_EQ(driverHeadline(status, asItStands), "The driver has not answered yet.");
    EXPECT_EQ(driverExplanation(status, asItStands), "The driver has not answered yet.");
    EXPECT_EQ(changesText(status, asItStands), "Every change is saved at once.");
  }
  EXPECT_EQ(driverDevicesText(std::nullopt, asItStands), "");
}

TEST(DriverText, KnowsAHelperThatDoesNotRun) {
  EXPECT_THAT(driverHeadline(DriverStatus(), asItStands), HasSubstr("helper does not run"));
  EXPECT_THAT(driverExplanation(DriverStatus(), asItStands), HasSubstr("helper does not run"));
  EXPECT_THAT(changesText(DriverStatus(), asItStands), HasSubstr("as soon as the driver works"));
}

TEST(DriverText, KnowsSimulatedTrackballs) {
  EXPECT_THAT(driverHeadline(statusOf("unused"), asItStands), HasSubstr("simulated"));
  EXPECT_EQ(changesText(statusOf("unused"), asItStands), "Every change is saved at once.");
}

TEST(DriverText, HasALineForEachTrackball) {
  EXPECT_EQ(driverDevicesText(withDevice("taken"), asItStands),
            "Crest Pointer™ Rev. 1.02: works by your settings");
  EXPECT_THAT(driverDevicesText(withDevice("waiting"), asItStands), HasSubstr("as soon as its buttons"));
  EXPECT_THAT(driverDevicesText(withDevice("left-alone"), asItStands), HasSubstr("an ordinary mouse"));
  EXPECT_THAT(driverDevicesText(withDevice("busy", EBUSY), asItStands), HasSubstr("another program"));
  EXPECT_THAT(driverDevicesText(withDevice("failed", EACCES), asItStands),
              HasSubstr("cannot be used: Permission denied"));
  DriverStatus two = withDevice("taken");
  two.devices.push_back(two.devices[0]);
  EXPECT_THAT(driverDevicesText(two, asItStands), ::testing::ContainsRegex("settings\nCrest"));
}

TEST(DriverText, SaysWhenNotEveryTrackballWorks) {
  for (const char* condition : {"busy", "failed"}) {
    EXPECT_EQ(driverHeadline(withDevice(condition), asItStands),
              "The driver works, but not for every trackball.");
  }
  for (const char* condition : {"taken", "waiting", "left-alone"}) {
    EXPECT_THAT(driverHeadline(withDevice(condition), asItStands), HasSubstr("do what you set"));
  }
}

}  // namespace
}  // namespace veltrix
