#include "helper/simulated_device_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "helper/device_entry.h"
#include "tests/support/device_log.h"

namespace veltrix {
namespace {

using testing::DeviceLog;
using ::testing::ElementsAre;

constexpr SimulatedDevice kSkiffline{0xA1D0, 0x2041, 0x0107};
constexpr SimulatedDevice kUnknown{0xA1D0, 0x9999, 0x0100};

TEST(SimulatedDevices, AreNamedByThreeHexadecimalNumbers) {
  EXPECT_EQ(parseSimulatedDevice("A1D0:2041:0107"), kSkiffline);
  EXPECT_EQ(parseSimulatedDevice("a1d0:2041:107"), kSkiffline);
  for (const char* bad : {"", "A1D0", "A1D0:2041", "A1D0:2041:", ":2041:0107", "A1D0:2041:0107:1",
                          "A1D0:20410:0107", "A1D0:2041:01.07", "A1D0:2041:0107 "}) {
    EXPECT_FALSE(parseSimulatedDevice(bad)) << bad;
  }
}

TEST(SimulatedDevices, ListsAreSeparatedByCommas) {
  EXPECT_THAT(parseSimulatedDevices("A1D0:2041:0107,A1D0:9999:0100").value(),
              ElementsAre(kSkiffline, kUnknown));
  EXPECT_THAT(parseSimulatedDevices("").value(), ElementsAre());
  for (const char* bad : {",", "A1D0:2041:0107,", ",A1D0:2041:0107", "A1D0:2041:0107;A1D0:2041:0107"}) {
    EXPECT_FALSE(parseSimulatedDevices(bad)) << bad;
  }
}

TEST(SimulatedDeviceSource, ReportsThePresentOnesInOrderAtTheStart) {
  DeviceLog log;
  SimulatedDeviceSource source({kSkiffline, kUnknown});
  ASSERT_TRUE(source.start(log));
  ASSERT_EQ(log.connected.size(), 2U);
  EXPECT_EQ(log.connected[0].entry.vendorID, 0xA1D0);
  EXPECT_EQ(log.connected[0].entry.productID, 0x2041);
  EXPECT_EQ(log.connected[0].entry.productVers, 0x0107);
  EXPECT_EQ(entryText(log.connected[0].entry.productName), "Skiffline\u2122 Trackball");
  EXPECT_EQ(entryText(log.connected[1].entry.productName), "Simulated trackball");
}

TEST(SimulatedDeviceSource, TellsTwoOfAKindApart) {
  DeviceLog log;
  SimulatedDeviceSource source({});
  ASSERT_TRUE(source.start(log));
  source.plug(kSkiffline);
  source.plug(kSkiffline);
  ASSERT_EQ(log.connected.size(), 2U);
  const std::string second = log.connected[1].id;
  EXPECT_NE(log.connected[0].id, second);
  EXPECT_TRUE(source.unplug(kSkiffline));
  ASSERT_EQ(log.connected.size(), 1U);
  EXPECT_EQ(log.connected[0].id, second);
  EXPECT_FALSE(source.unplug(kUnknown));
  EXPECT_TRUE(source.unplug(kSkiffline));
  EXPECT_FALSE(source.unplug(kSkiffline));
  EXPECT_TRUE(log.connected.empty());
}

}  // namespace
}  // namespace veltrix
