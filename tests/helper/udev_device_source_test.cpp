#include "helper/udev_device_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <chrono>
#include <string>

#include "helper/device_entry.h"
#include "helperlink/helper_messaging.h"
#include "tests/support/device_log.h"
#include "tests/support/helper_process.h"
#include "tests/support/udev_test_bed.h"
#include "tests/support/wait_until.h"

// Runs with umockdev's preloaded library, under which /sys and udev are those of the test bed.
namespace veltrix {
namespace {

using testing::DeviceLog;
using testing::waitUntil;

struct UsbDevice {
  const char* name;  // of the USB port
  const char* vendor = "a1d0";
  const char* product = "2041";
  const char* version = "0110";
};

class TestBed : public testing::UdevTestBed {
 public:
  // A USB device with one interface; the interface's path.
  std::string addUsb(const UsbDevice& device, const char* interfaceNumber = "00") {
    const std::string usb = add("usb", device.name, "",
                                {"idVendor", device.vendor, "idProduct", device.product, "bcdDevice",
                                 device.version, "manufacturer", "Aldmoor", "product", "Skiffline Trackball"},
                                {"DEVTYPE", "usb_device"});
    return addInterface(usb, device.name, interfaceNumber);
  }
  std::string addInterface(const std::string& usb, const std::string& port, const char* number) {
    return add("usb", port + ":1." + number, usb, {"bInterfaceNumber", number}, {"DEVTYPE", "usb_interface"});
  }
  // An event node below an interface, or below nothing.
  std::string addNode(const std::string& name, const std::string& interface) {
    return add("input", name, interface, {}, {"DEVNAME", "/dev/input/" + name});
  }
  void remove(const std::string& path) {
    tell(path, "remove");
    removeSilently(path);
  }
};

class UdevDeviceSourceTest : public ::testing::Test {
 protected:
  void start() {
    const Status started = fSource.start(fLog);
    ASSERT_TRUE(started) << started.error().message;
  }
  // Runs the loop until the source has taken the number of connected devices to `count`.
  bool becomes(std::size_t count) {
    return waitUntil([&] {
      sd_event_run(fLoop.get(), 1000);
      return fLog.connected.size() == count;
    });
  }

  TestBed fBed;
  DeviceLog fLog;
  EventLoopHandle fLoop = makeEventLoop();
  UdevDeviceSource fSource{fLoop.get()};
};

TEST_F(UdevDeviceSourceTest, FindsWhatIsConnectedAtTheStart) {
  fBed.addNode("event5", fBed.addUsb({"1-1"}, "02"));
  start();
  ASSERT_EQ(fLog.connected.size(), 1U);
  const VeltrixDeviceEntry& entry = fLog.connected[0].entry;
  EXPECT_EQ(entry.vendorID, 0xA1D0);
  EXPECT_EQ(entry.productID, 0x2041);
  EXPECT_EQ(entry.productVers, 0x010A);
  EXPECT_EQ(entry.interfaceNum, 2);
  EXPECT_EQ(entryText(entry.vendorName), "Aldmoor");
  EXPECT_EQ(entryText(entry.productName), "Skiffline Trackball");
}

TEST_F(UdevDeviceSourceTest, FindsTrackballsOfNoKnownKind) {
  fBed.addNode("event5", fBed.addUsb({.name = "1-1", .product = "feed"}));
  start();
  ASSERT_EQ(fLog.connected.size(), 1U);
  EXPECT_EQ(fLog.connected[0].entry.productID, 0xFEED);
}

TEST_F(UdevDeviceSourceTest, LeavesOtherDevicesAlone) {
  fBed.addNode("event5", fBed.addUsb({.name = "1-1", .vendor = "046d"}));
  fBed.addNode("event6", "");
  fBed.addNode("mouse0", fBed.addUsb({"1-2"}));
  start();
  EXPECT_TRUE(fLog.connected.empty());
}

TEST_F(UdevDeviceSourceTest, DeviceOfSeveralNodesCountsOnceUntilTheLastHasGone) {
  const std::string first = fBed.addUsb({"1-1"});
  const std::string second = fBed.addInterface(first.substr(0, first.rfind('/')), "1-1", "01");
  const std::string pointer = fBed.addNode("event5", first);
  const std::string keys = fBed.addNode("event6", second);
  start();
  EXPECT_EQ(fLog.connected.size(), 1U);
  fBed.remove(pointer);
  const std::string other = fBed.addNode("event9", fBed.addUsb({"1-2"}));
  fBed.tell(other, "add");
  EXPECT_TRUE(becomes(2));
  fBed.remove(keys);
  EXPECT_TRUE(becomes(1));
}

TEST_F(UdevDeviceSourceTest, FollowsHotPlugBothWays) {
  start();
  EXPECT_TRUE(fLog.connected.empty());
  const std::string interface = fBed.addUsb({"1-1"});
  std::string node = fBed.addNode("event5", interface);
  fBed.tell(node, "add");
  EXPECT_TRUE(becomes(1));
  fBed.remove(node);
  EXPECT_TRUE(becomes(0));
  node = fBed.addNode("event7", interface);
  fBed.tell(node, "add");
  EXPECT_TRUE(becomes(1));
}

TEST_F(UdevDeviceSourceTest, DeviceThatIsReportedTwiceCountsOnce) {
  const std::string node = fBed.addNode("event5", fBed.addUsb({"1-1"}));
  start();
  fBed.tell(node, "add");
  fBed.tell(node, "change");
  fBed.tell(fBed.addNode("event6", fBed.addUsb({"1-2"})), "add");
  EXPECT_TRUE(becomes(2));
}

TEST_F(UdevDeviceSourceTest, TwoAlikeAreTwo) {
  fBed.addNode("event5", fBed.addUsb({"1-1"}));
  fBed.addNode("event6", fBed.addUsb({"1-2"}));
  start();
  ASSERT_EQ(fLog.connected.size(), 2U);
  EXPECT_NE(fLog.connected[0].id, fLog.connected[1].id);
}

TEST(HelperWithRealDevices, FollowsUdevAndOffersNoSimulation) {
  TestBed bed;
  const std::string interface = bed.addUsb({"1-1"});
  const std::string node = bed.addNode("event5", interface);
  testing::HelperSession session;
  session.startHelper({});
  VeltrixDeviceList list{};
  ASSERT_EQ(VeltrixGetConnectedDevices(&list), 0);
  EXPECT_EQ(list.count, 1);
  EXPECT_EQ(list.device[0].productVers, 0x010A);
  EXPECT_FALSE(session.flagProperty("Simulated"));
  EXPECT_EQ(session.simulate("Plug", "A1D0:2041:0107"), SD_BUS_ERROR_UNKNOWN_METHOD);
  bed.remove(node);
  EXPECT_TRUE(waitUntil([&] { return VeltrixGetConnectedDevices(&list) == 0 && list.count == 0; }));
}

}  // namespace
}  // namespace veltrix
