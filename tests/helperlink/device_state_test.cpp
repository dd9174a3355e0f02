#include "helperlink/device_state.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <mutex>
#include <thread>
#include <vector>

#include "platform/bus_event_transport.h"
#include "tests/support/environment.h"
#include "tests/support/private_bus.h"
#include "tests/support/wait_until.h"

namespace veltrix {
namespace {

std::vector<std::byte> countingBytes(std::size_t size) {
  std::vector<std::byte> bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::byte>(i + 1);
  return bytes;
}

class DeviceStateHandler : public ::testing::Test {
 public:
  DeviceStateHandler() {
    setDeviceStateConsumer([this](const DeviceState& state) {
      const std::lock_guard<std::mutex> lock(fMutex);
      fSeen.push_back(state);
      fThread = std::this_thread::get_id();
    });
  }
  ~DeviceStateHandler() override { setDeviceStateConsumer({}); }

 protected:
  static IncomingEvent event(std::size_t size, std::uint32_t type = kDeviceStateType,
                             std::uint32_t keyword = kDirectObjectKeyword) {
    return {kVeltrixEventClass, kDeviceStateEvent, EventParameter(keyword, type, countingBytes(size))};
  }
  std::size_t seen() {
    const std::lock_guard<std::mutex> lock(fMutex);
    return fSeen.size();
  }

  std::mutex fMutex;
  std::vector<DeviceState> fSeen;
  std::thread::id fThread;
};

TEST_F(DeviceStateHandler, HandsOnSixteenBytes) {
  EXPECT_EQ(VeltrixDeviceStateHandler(event(16)), 0);
  ASSERT_EQ(fSeen.size(), 1U);
  EXPECT_EQ(std::vector<std::byte>(fSeen[0].begin(), fSeen[0].end()), countingBytes(16));
}

TEST_F(DeviceStateHandler, SwallowsAnyOtherSize) {
  for (const std::size_t size : {0U, 1U, 15U, 17U, 4228U})
    EXPECT_EQ(VeltrixDeviceStateHandler(event(size)), 0) << size;
  EXPECT_TRUE(fSeen.empty());
}

TEST_F(DeviceStateHandler, SwallowsOtherParameters) {
  EXPECT_EQ(VeltrixDeviceStateHandler(event(16, kUnsigned32Type)), 0);
  EXPECT_EQ(VeltrixDeviceStateHandler(event(16, kDeviceStateType, 1)), 0);
  EXPECT_EQ(VeltrixDeviceStateHandler({kVeltrixEventClass, kDeviceStateEvent, {}}), 0);
  EXPECT_TRUE(fSeen.empty());
}

TEST_F(DeviceStateHandler, SucceedsWithoutAConsumer) {
  setDeviceStateConsumer({});
  EXPECT_EQ(VeltrixDeviceStateHandler(event(16)), 0);
  EXPECT_TRUE(fSeen.empty());
}

TEST_F(DeviceStateHandler, InstalledOnceTakesTheHelpersEventsOnAnotherThread) {
  const testing::PrivateBus bus;
  const testing::ScopedEnvironment address("DBUS_SESSION_BUS_ADDRESS", bus.address());
  installDeviceStateHandler();
  installDeviceStateHandler();
  Event toPane(EventAddress("VeltrixPane"), kVeltrixEventClass, kDeviceStateEvent);
  ASSERT_EQ(toPane.putParameter(kDirectObjectKeyword, kDeviceStateType, countingBytes(16)), 0);
  const auto transport = makeBusEventTransport();
  EventReply reply;
  EXPECT_TRUE(testing::waitUntil(
      [&] { return transport->sendWaitingForReply(toPane, std::chrono::seconds(10), &reply) == 0; }));
  EXPECT_EQ(seen(), 1U);
  EXPECT_NE(fThread, std::this_thread::get_id());

  const Event unknown(EventAddress("VeltrixPane"), kVeltrixEventClass, kGetConnectedDevicesEvent);
  EXPECT_EQ(transport->sendWaitingForReply(unknown, std::chrono::seconds(10), &reply), kEventNotHandled);
  EXPECT_EQ(seen(), 1U);
}

}  // namespace
}  // namespace veltrix
