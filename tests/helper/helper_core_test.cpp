#include "helper/helper_core.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "helper/simulated_device_source.h"
#include "platform/property_list_io.h"
#include "tests/support/settings_documents.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using testing::dictionaryOf;
using testing::documentOf;
using ::testing::ElementsAre;
using testing::entryOf;

class CountingObserver : public HelperObserver {
 public:
  void readingIsDue() override { ++due; }
  void settingsRead() override { ++read; }
  void devicesChanged() override { ++devices; }
  void messageTaken() override { ++messages; }

  int due = 0;
  int read = 0;
  int devices = 0;
  int messages = 0;
};

class HelperCoreTest : public ::testing::Test {
 public:
  HelperCoreTest() {
    writeSpeed(400);
    fCore.settle();
    fCore.setObserver(&fObserver);
    EXPECT_TRUE(fSource.start(fCore));
  }

 protected:
  void writeSpeed(int speed) {
    auto entry = entryOf(0xA1D0, 0x2041);
    entry.set("options", dictionaryOf({{"speed", speed}}));
    testing::writeFile(fUser, plist::writeXml(documentOf({entry})).value());
    send(kSettingsChangedMessage);
  }
  std::int32_t send(std::uint32_t message) {
    return take(kHelperMessageEvent,
                EventParameter(kDirectObjectKeyword, kUnsigned32Type, std::as_bytes(std::span(&message, 1))));
  }
  std::int32_t take(std::uint32_t id, const EventParameter& parameter = {}) {
    return fCore.takeEvent({kVeltrixEventClass, id, parameter}, &fReply);
  }
  std::uint8_t speedByte() { return fCore.devices().at(0).record.record.value().speed; }

  testing::TemporaryFolder fFolder;
  std::string fUser = fFolder / "user.plist";
  HelperCore fCore{fUser, fFolder / "factory.plist"};
  CountingObserver fObserver;
  SimulatedDeviceSource fSource{{}};
  EventReply fReply;
};

constexpr SimulatedDevice kDevice{0xA1D0, 0x2041, 0x0107};

TEST_F(HelperCoreTest, AnswersTheRequestForDevicesByTheWholeRecord) {
  fSource.plug(kDevice);
  fSource.plug({0xA1D0, 0x1020, 0x0102});
  ASSERT_EQ(take(kGetConnectedDevicesEvent), 0);
  VeltrixDeviceList list{};
  std::size_t size = 0;
  ASSERT_EQ(fReply.parameter().read(kDirectObjectKeyword, kDeviceListType, &list, sizeof list, &size), 0);
  EXPECT_EQ(size, 4228U);
  EXPECT_EQ(list.count, 2);
  EXPECT_EQ(list.helperState, kVeltrixHelperStateAccessibility);
  EXPECT_EQ(list.device[0].productVers, 0x0107);
  EXPECT_EQ(list.device[1].productID, 0x1020);
}

TEST_F(HelperCoreTest, ListHasAtMostSixteenDevicesAndTheNextMovesUp) {
  for (std::uint16_t i = 0; i < 17; ++i) fSource.plug({0xA1D0, i, 0x0100});
  EXPECT_EQ(fCore.deviceList().count, 16);
  EXPECT_EQ(fCore.deviceList().device[15].productID, 15);
  EXPECT_TRUE(fSource.unplug({0xA1D0, 3, 0x0100}));
  EXPECT_EQ(fCore.deviceList().count, 16);
  EXPECT_EQ(fCore.deviceList().device[3].productID, 4);
  EXPECT_EQ(fCore.deviceList().device[15].productID, 16);
}

TEST_F(HelperCoreTest, UnusedSlotsCarryNothing) {
  fSource.plug(kDevice);
  fSource.unplug(kDevice);
  const VeltrixDeviceEntry empty{};
  EXPECT_EQ(fCore.deviceList().count, 0);
  EXPECT_EQ(std::memcmp(&fCore.deviceList().device[0], &empty, sizeof empty), 0);
}

TEST_F(HelperCoreTest, UnknownDeviceThatLeavesChangesNothing) {
  fCore.deviceDetached("never seen");
  EXPECT_EQ(fObserver.devices, 0);
}

TEST_F(HelperCoreTest, HoldsTheRecordOfEachDevice) {
  fSource.plug(kDevice);
  EXPECT_EQ(speedByte(), 400 / 20);
  fSource.plug({0xA1D0, 0x1020, 0x0100});
  EXPECT_FALSE(fCore.devices()[1].record.record);
}

TEST_F(HelperCoreTest, ChangedSettingsGiveNewRecordsAndANewGeneration) {
  fSource.plug(kDevice);
  const std::uint32_t before = fCore.generation();
  writeSpeed(800);
  EXPECT_EQ(fObserver.due, 1);
  EXPECT_EQ(speedByte(), 20);
  fCore.settle();
  EXPECT_EQ(speedByte(), 40);
  EXPECT_EQ(fCore.generation(), before + 1);
  EXPECT_EQ(fObserver.read, 1);
  fCore.settle();
  EXPECT_EQ(fCore.generation(), before + 1);
}

TEST_F(HelperCoreTest, BurstIsReadOnceAndTheLastStateWins) {
  fSource.plug(kDevice);
  for (int speed = 100; speed <= 2000; speed += 100) writeSpeed(speed);
  EXPECT_EQ(fObserver.due, 1);
  fCore.settle();
  EXPECT_EQ(fObserver.read, 1);
  EXPECT_EQ(speedByte(), 100);
}

TEST_F(HelperCoreTest, EndlessBurstIsReadFromTimeToTime) {
  fSource.plug(kDevice);
  for (int i = 0; i < 100; ++i) writeSpeed(600);
  EXPECT_EQ(fObserver.read, 3);
  EXPECT_EQ(speedByte(), 30);
}

TEST_F(HelperCoreTest, DeviceThatComesDuringABurstGetsTheNewestRecord) {
  writeSpeed(1000);
  fSource.plug(kDevice);
  EXPECT_EQ(speedByte(), 50);
}

TEST_F(HelperCoreTest, UnreadableFileKeepsTheLastGoodRecords) {
  fSource.plug(kDevice);
  testing::writeFile(fUser, "{ broken");
  send(kSettingsChangedMessage);
  fCore.settle();
  EXPECT_EQ(speedByte(), 20);
  EXPECT_FALSE(fCore.settings().error().empty());
  fSource.unplug(kDevice);
  fSource.plug(kDevice);
  EXPECT_EQ(speedByte(), 20);
}

TEST_F(HelperCoreTest, NotesWhetherThePaneIsShown) {
  EXPECT_FALSE(fCore.paneShown());
  EXPECT_EQ(send(kPaneShownMessage), 0);
  EXPECT_TRUE(fCore.paneShown());
  EXPECT_EQ(send(kPaneLeftMessage), 0);
  EXPECT_FALSE(fCore.paneShown());
  EXPECT_THAT(fCore.recentMessages(),
              ElementsAre(kSettingsChangedMessage, kPaneShownMessage, kPaneLeftMessage));
}

TEST_F(HelperCoreTest, RemembersTheLastSixteenMessages) {
  for (int i = 0; i < 20; ++i) send(kPaneShownMessage);
  send(kPaneLeftMessage);
  EXPECT_EQ(fCore.recentMessages().size(), 16U);
  EXPECT_EQ(fCore.recentMessages().back(), kPaneLeftMessage);
}

TEST_F(HelperCoreTest, RefusesWhatIsNoEventOfTheProtocol) {
  EXPECT_EQ(take(kDeviceStateEvent), kEventNotHandled);
  EXPECT_EQ(fCore.takeEvent({1, kGetConnectedDevicesEvent, {}}, &fReply), kEventNotHandled);
  EXPECT_EQ(send(fourCharCode("VXR2")), kEventNotHandled);
  EXPECT_EQ(take(kHelperMessageEvent), kEventParameterMissing);
  for (const std::size_t size : {0U, 3U, 5U}) {
    EXPECT_EQ(take(kHelperMessageEvent,
                   EventParameter(kDirectObjectKeyword, kUnsigned32Type, std::vector<std::byte>(size))),
              kEventCoercionFailed);
  }
  EXPECT_EQ(fObserver.messages, 0);
}

TEST_F(HelperCoreTest, AccessibilityCanBeTakenAway) {
  fCore.setAccessibility(false);
  EXPECT_EQ(fCore.deviceList().helperState, 0);
  EXPECT_EQ(fObserver.devices, 1);
  fCore.setAccessibility(false);
  EXPECT_EQ(fObserver.devices, 1);
}

TEST_F(HelperCoreTest, DeviceStateTellsOfEveryChange) {
  const DeviceState before = fCore.deviceState();
  fSource.plug(kDevice);
  const DeviceState with = fCore.deviceState();
  fSource.unplug(kDevice);
  EXPECT_NE(with, before);
  EXPECT_NE(fCore.deviceState(), before);
  EXPECT_EQ(fObserver.devices, 2);
  std::uint16_t words[4];
  std::memcpy(words, with.data(), sizeof words);
  EXPECT_THAT(words, ElementsAre(1, 1, kVeltrixHelperStateAccessibility, 0));
}

}  // namespace
}  // namespace veltrix
