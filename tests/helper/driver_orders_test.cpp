#include "helper/driver_orders.h"

#include <gmock/gmock.h>

#include <string>

#include "driverlink/packet_rules.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

ConnectedDevice deviceOf(std::uint16_t product, std::uint16_t version, std::optional<std::uint8_t> speed) {
  ConnectedDevice device;
  device.found.entry.vendorID = 0xA1D0;
  device.found.entry.productID = product;
  device.found.entry.productVers = version;
  if (speed) {
    device.record.record = DriverRecord{};
    device.record.record->speed = *speed;
  }
  return device;
}

class DriverOrdersTest : public ::testing::Test {
 protected:
  void want(const std::vector<ConnectedDevice>& devices) { orders.want(driverOrders(devices)); }

  // What is told after that much time, as "apply PRODUCT SPEED" and "withdraw PRODUCT".
  std::vector<std::string> told(milliseconds later = milliseconds(1000)) {
    now += later;
    std::vector<std::string> log;
    ok = orders.tell(now, [&](std::span<const std::byte> packet) {
      if (const auto apply = readPacket<ApplyPacket>(packet)) {
        log.push_back("apply " + std::to_string(apply->device.product) + " " +
                      std::to_string(apply->record.speed));
      } else if (const auto withdraw = readPacket<WithdrawPacket>(packet)) {
        log.push_back("withdraw " + std::to_string(withdraw->device.product));
      } else {
        log.emplace_back("malformed");
      }
      return log.size() <= room;
    });
    return log;
  }

  DriverOrders orders;
  DriverOrders::Clock::time_point now{};
  std::size_t room = 100;
  bool ok = false;
};

TEST_F(DriverOrdersTest, TellsOfEveryTrackballThatHasARecord) {
  want({deviceOf(1, 0x107, 20), deviceOf(2, 0x107, std::nullopt), deviceOf(3, 0x107, 30)});
  EXPECT_THAT(told(), ElementsAre("apply 1 20", "apply 3 30"));
  EXPECT_TRUE(ok);
}

TEST_F(DriverOrdersTest, TellsOfTrackballsThatAreAlikeOnce) {
  want({deviceOf(1, 0x107, 20), deviceOf(1, 0x107, 20), deviceOf(1, 0x108, 20)});
  EXPECT_THAT(told(), ElementsAre("apply 1 20", "apply 1 20"));
}

TEST_F(DriverOrdersTest, CarriesRecordAndScrollParametersAsTheyAre) {
  auto device = deviceOf(1, 0x107, 20);
  device.record.record->driverEnabled = 0;
  device.record.record->action[15].command = 7;
  device.record.scroll = {.triggerTime = 1, .timeDecay = -2, .timeStop = 3, .countDecay = 4, .countStop = 5};
  const auto packets = driverOrders({device});
  ASSERT_EQ(packets.size(), 1U);
  EXPECT_EQ(packets[0].device, (DeviceAddress{0xA1D0, 1, 0x107, 0}));
  EXPECT_EQ(packets[0].record.driverEnabled, 0);
  EXPECT_EQ(packets[0].record.action[15].command, 7);
  EXPECT_EQ(packets[0].scroll, device.record.scroll);
}

TEST_F(DriverOrdersTest, TellsOnlyWhatDiffers) {
  want({deviceOf(1, 0x107, 20), deviceOf(2, 0x107, 20)});
  told();
  want({deviceOf(1, 0x107, 20), deviceOf(2, 0x107, 21)});
  EXPECT_THAT(told(), ElementsAre("apply 2 21"));
  EXPECT_THAT(told(), IsEmpty());
  auto scrolling = deviceOf(1, 0x107, 20);
  scrolling.record.scroll.timeStop = 5;
  want({scrolling, deviceOf(2, 0x107, 21)});
  EXPECT_THAT(told(), ElementsAre("apply 1 20"));
}

TEST_F(DriverOrdersTest, WithdrawsWhatHasNoRecordAnyMoreOrHasGone) {
  want({deviceOf(1, 0x107, 20), deviceOf(2, 0x107, 20), deviceOf(3, 0x107, 20)});
  told();
  want({deviceOf(1, 0x107, std::nullopt), deviceOf(3, 0x107, 20)});
  EXPECT_THAT(told(), ElementsAre("withdraw 2", "withdraw 1"));
  want({deviceOf(1, 0x107, 20)});
  EXPECT_THAT(told(), ElementsAre("withdraw 3", "apply 1 20"));
}

TEST_F(DriverOrdersTest, TellsNothingWhenOneOfTwoThatAreAlikeGoes) {
  want({deviceOf(1, 0x107, 20), deviceOf(1, 0x107, 20)});
  told();
  want({deviceOf(1, 0x107, 20)});
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(DriverOrdersTest, TellsEverythingAgainAfterANewConnection) {
  want({deviceOf(1, 0x107, 20)});
  told();
  orders.forget();
  EXPECT_THAT(told(milliseconds(0)), ElementsAre("apply 1 20"));
}

TEST_F(DriverOrdersTest, DoesNotWithdrawWhatANewConnectionNeverHeard) {
  want({deviceOf(1, 0x107, 20)});
  told();
  orders.forget();
  want({});
  EXPECT_THAT(told(), IsEmpty());
}

TEST_F(DriverOrdersTest, FirstChangeGoesAtOnceAndMoreInIntervals) {
  want({deviceOf(1, 0x107, 20)});
  EXPECT_EQ(orders.due(), DriverOrders::Clock::time_point::min());
  told();
  EXPECT_EQ(orders.due(), std::nullopt);
  want({deviceOf(1, 0x107, 21)});
  EXPECT_THAT(told(milliseconds(19)), IsEmpty());
  want({deviceOf(1, 0x107, 22)});
  EXPECT_EQ(orders.due(), now + milliseconds(1));
  EXPECT_THAT(told(milliseconds(1)), ElementsAre("apply 1 22"));
}

TEST_F(DriverOrdersTest, KeepsWhatCouldNotBeSaid) {
  want({deviceOf(1, 0x107, 20), deviceOf(2, 0x107, 20)});
  room = 1;
  told();
  EXPECT_FALSE(ok);
  room = 100;
  EXPECT_THAT(told(), ElementsAre("apply 2 20"));
}

TEST_F(DriverOrdersTest, KeepsToItselfWhatTheDriverWouldNotTake) {
  auto device = deviceOf(1, 0x107, 20);
  device.record.record->reserved[3] = 1;
  EXPECT_THAT(driverOrders({device}), IsEmpty());
}

}  // namespace
}  // namespace veltrix
