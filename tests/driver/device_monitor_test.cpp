#include "driver/device_monitor.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <map>

#include "driver/event_loop.h"
#include "driver/input_node.h"
#include "driver/output_identity.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/udev_test_bed.h"
#include "util/file_descriptor.h"

// Runs with umockdev's preloaded library, under which /sys is that of the test bed. The folder of udev's
// files is one of the test.
namespace veltrix {
namespace {

using testing::TemporaryFolder;
using testing::UdevTestBed;

constexpr const char* kPointerKeys = "ff0000 0 0 0 0";
constexpr const char* kPointerAxes = "143";

struct InputDevice {
  std::string vendor = "a1d0";
  std::string product = "2041";
  std::string version = "0111";
  std::string keys = kPointerKeys;
  std::string axes = kPointerAxes;
};

class NodeLog final : public InputNodeListener {
 public:
  void nodeAdded(const std::string& id, const InputNode& node) noexcept override {
    EXPECT_TRUE(there.emplace(id, node).second) << id;
  }
  void nodeRemoved(const std::string& id) noexcept override { EXPECT_EQ(there.erase(id), 1U) << id; }

  std::map<std::string, InputNode> there;
};

class DeviceMonitorTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(loop.start()); }

  std::string addInput(const InputDevice& device, const std::string& parent = "") {
    return bed.add("input", "input" + std::to_string(++fInputs), parent,
                   {"id/vendor", device.vendor, "id/product", device.product, "id/version", device.version,
                    "capabilities/key", device.keys, "capabilities/rel", device.axes},
                   {});
  }
  std::string addNode(int minor, const std::string& input, const std::vector<std::string>& properties = {}) {
    std::vector<std::string> all = {"DEVNAME", "/dev/input/event" + std::to_string(minor - 64),
                                    "MAJOR",   "13",
                                    "MINOR",   std::to_string(minor)};
    all.insert(all.end(), properties.begin(), properties.end());
    return bed.add("input", "event" + std::to_string(minor - 64), input,
                   {"dev", "13:" + std::to_string(minor)}, all);
  }

  // udev has finished with the node: its file takes its place.
  void finish(const std::string& id) {
    const std::string temporary = folder / ("." + id);
    { const FileDescriptor file(::open(temporary.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644)); }
    ASSERT_EQ(std::rename(temporary.c_str(), (folder / id).c_str()), 0);
  }
  void forget(const std::string& id) { ASSERT_EQ(::unlink((folder / id).c_str()), 0); }

  void start() {
    const Status started = monitor.start();
    ASSERT_TRUE(started) << started.error().message;
  }
  // Messages of the folder are there at once.
  void settle() { ASSERT_TRUE(loop.waitUntil(Microseconds{1})); }

  UdevTestBed bed;
  TemporaryFolder folder;
  EventLoop loop;
  NodeLog log;
  DeviceMonitor monitor{loop, log, folder.path()};

 private:
  int fInputs = 0;
};

TEST_F(DeviceMonitorTest, FindsWhatIsThereAtTheStart) {
  addNode(69, addInput({}));
  finish("c13:69");
  start();
  ASSERT_EQ(log.there.count("c13:69"), 1U);
  const InputNode& node = log.there.at("c13:69");
  EXPECT_EQ(node.kind, InputNode::Kind::kTrackball);
  EXPECT_EQ(node.path, "/dev/input/event5");
  EXPECT_EQ(node.address, (DeviceAddress{0xA1D0, 0x2041, 0x010B, 0}));
}

TEST_F(DeviceMonitorTest, FindsTrackballsOfNoKnownKind) {
  addNode(69, addInput({.product = "feed"}));
  finish("c13:69");
  start();
  ASSERT_EQ(log.there.count("c13:69"), 1U);
  EXPECT_EQ(log.there.at("c13:69").kind, InputNode::Kind::kTrackball);
  EXPECT_EQ(log.there.at("c13:69").address.product, 0xFEED);
}

TEST_F(DeviceMonitorTest, ANodeCountsOnceUdevHasFinishedWithIt) {
  start();
  addNode(69, addInput({}));
  settle();
  EXPECT_TRUE(log.there.empty());
  finish("c13:69");
  settle();
  EXPECT_EQ(log.there.size(), 1U);
  finish("c13:69");  // it was changed
  settle();
  forget("c13:69");
  settle();
  EXPECT_TRUE(log.there.empty());
}

TEST_F(DeviceMonitorTest, AUsbTrackballHasTheVersionOfItsProduct) {
  const std::string usb =
      bed.add("usb", "1-1", "", {"idVendor", "a1d0", "idProduct", "2041", "bcdDevice", "0299"},
              {"DEVTYPE", "usb_device"});
  addNode(70, addInput({.version = "0110"}, usb));
  finish("c13:70");
  start();
  ASSERT_EQ(log.there.size(), 1U);
  EXPECT_EQ(log.there.begin()->second.address.productVersion, 0x0263);
}

TEST_F(DeviceMonitorTest, KeyboardsAreWhatUdevTakesForOne) {
  const std::string keyboard = addInput({.vendor = "046d", .keys = "fffffffffffffffe", .axes = "0"});
  addNode(69, keyboard, {"ID_INPUT_KEYBOARD", "1"});
  addNode(70, addInput({.vendor = "046d", .keys = "fffffffffffffffe", .axes = "0"}), {"ID_INPUT_KEY", "1"});
  for (const char* id : {"c13:69", "c13:70"}) finish(id);
  start();
  ASSERT_EQ(log.there.size(), 1U);
  EXPECT_EQ(log.there.at("c13:69").kind, InputNode::Kind::kKeyboard);
}

TEST_F(DeviceMonitorTest, OtherDevicesAreLeftAlone) {
  addNode(64, addInput({.vendor = "046d"}));
  addNode(65, addInput({.axes = "0"}));
  addNode(66, addInput({.keys = "0"}));
  bed.add("input", "mouse0", addInput({}), {"dev", "13:32"}, {"DEVNAME", "/dev/input/mouse0"});
  for (const char* id : {"c13:64", "c13:65", "c13:66", "c13:32", "c13:99", "c13:x", "c13:", "c189:1"})
    finish(id);
  start();
  EXPECT_TRUE(log.there.empty());
}

TEST_F(DeviceMonitorTest, ItsOwnDevicesAreLeftAlone) {
  char product[8];
  std::snprintf(product, sizeof product, "%04x", unsigned{kPointerProduct});
  addNode(64, addInput({.product = product}));
  std::snprintf(product, sizeof product, "%04x", unsigned{kKeyboardProduct});
  addNode(65, addInput({.product = product, .keys = "fffffffffffffffe", .axes = "0"}),
          {"ID_INPUT_KEYBOARD", "1"});
  for (const char* id : {"c13:64", "c13:65"}) finish(id);
  start();
  EXPECT_TRUE(log.there.empty());
}

TEST_F(DeviceMonitorTest, SaysThatThereIsNoUdev) {
  DeviceMonitor lost(loop, log, folder / "nothing");
  const Status started = lost.start();
  ASSERT_FALSE(started);
  EXPECT_EQ(started.error().code, ENOENT);
  EXPECT_NE(started.error().message.find("nothing"), std::string::npos);
}

TEST(Capabilities, AreReadFromTheLastWord) {
  EXPECT_TRUE(hasCapability("143", 0));
  EXPECT_TRUE(hasCapability("143", 8));
  EXPECT_FALSE(hasCapability("143", 2));
  EXPECT_TRUE(hasCapability("ff0000 0 0 0 0", 0x110));
  EXPECT_FALSE(hasCapability("ff0000 0 0 0", 0x110));
  EXPECT_FALSE(hasCapability("ff0000 0 0 0 0", 0x10F));
  EXPECT_TRUE(hasCapability("1 8000000000000000", 63));
  EXPECT_TRUE(hasCapability("1 8000000000000000", 64));
  EXPECT_FALSE(hasCapability("", 0));
  EXPECT_FALSE(hasCapability("nonsense", 0));
}

}  // namespace
}  // namespace veltrix
