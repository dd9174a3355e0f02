#include "platform/event_receiver.h"

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <atomic>
#include <vector>

#include "platform/bus_event_transport.h"
#include "tests/support/private_bus.h"
#include "tests/support/wait_until.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::PrivateBus;
using testing::waitUntil;

BusHandle connectTo(const PrivateBus& bus) {
  auto connection = openSessionBus(bus.address(), std::chrono::steady_clock::now() + seconds(10));
  EXPECT_TRUE(connection.ok());
  return std::move(connection.value());
}

class CallError {
 public:
  ~CallError() { sd_bus_error_free(&fError); }
  sd_bus_error* get() { return &fError; }
  std::string name() const { return fError.name != nullptr ? fError.name : ""; }

 private:
  sd_bus_error fError = SD_BUS_ERROR_NULL;
};

class EventReceiverTest : public ::testing::Test {
 protected:
  // One event through the well-known name; the id comes back from the receiver that took it.
  std::int32_t send(std::uint32_t id) {
    EventReply reply;
    return fTransport->sendWaitingForReply(Event(EventAddress("VeltrixPeer"), 1, id), seconds(10), &reply);
  }
  EventHandler counter(std::atomic<int>& count) {
    return [&count](const IncomingEvent&, EventReply*) {
      ++count;
      return 0;
    };
  }

  PrivateBus fBus;
  std::unique_ptr<EventTransport> fTransport = makeBusEventTransport(fBus.address());
};

TEST_F(EventReceiverTest, TakesEventsUnderBothNames) {
  std::atomic<int> count{0};
  const EventReceiverThread receiver("VeltrixPeer", counter(count), fBus.address());
  EXPECT_TRUE(waitUntil([&] { return send(1) == 0; }));
  EXPECT_EQ(count, 1);
}

TEST_F(EventReceiverTest, MalformedCallsAreAnsweredByAnErrorAndDoNoHarm) {
  std::atomic<int> count{0};
  const EventReceiverThread receiver("VeltrixPeer", counter(count), fBus.address());
  EXPECT_TRUE(waitUntil([&] { return send(1) == 0; }));
  const BusHandle client = connectTo(fBus);
  CallError wrongSignature;
  EXPECT_LT(sd_bus_call_method(client.get(), "com.aldmoor.VeltrixPeer", kEventsObject, kEventsInterface,
                               "Send", wrongSignature.get(), nullptr, "su", "Send", 1U),
            0);
  EXPECT_EQ(wrongSignature.name(), SD_BUS_ERROR_INVALID_ARGS);
  CallError wrongMethod;
  EXPECT_LT(sd_bus_call_method(client.get(), "com.aldmoor.VeltrixPeer", kEventsObject, kEventsInterface,
                               "Receive", wrongMethod.get(), nullptr, ""),
            0);
  EXPECT_EQ(wrongMethod.name(), SD_BUS_ERROR_UNKNOWN_METHOD);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(send(1), 0);
}

TEST_F(EventReceiverTest, DataOverTheLimitNeverReachesTheHandler) {
  std::atomic<int> count{0};
  const EventReceiverThread receiver("VeltrixPeer", counter(count), fBus.address());
  EXPECT_TRUE(waitUntil([&] { return send(1) == 0; }));
  const BusHandle client = connectTo(fBus);
  sd_bus_message* raw = nullptr;
  ASSERT_GE(sd_bus_message_new_method_call(client.get(), &raw, "com.aldmoor.VeltrixPeer", kEventsObject,
                                           kEventsInterface, "Send"),
            0);
  const BusMessageHandle call(raw);
  const std::vector<std::byte> data(kMaximumEventBytes + 1);
  ASSERT_GE(sd_bus_message_append(raw, "uuuu", 1U, 1U, kDirectParameter, 1U), 0);
  ASSERT_GE(sd_bus_message_append_array(raw, 'y', data.data(), data.size()), 0);
  CallError error;
  EXPECT_LT(sd_bus_call(client.get(), raw, 0, error.get(), nullptr), 0);
  EXPECT_EQ(error.name(), kTooLargeError);
  EXPECT_EQ(count, 1);
}

TEST_F(EventReceiverTest, NextInstanceGetsTheNameWhenTheFirstEnds) {
  std::atomic<int> first{0};
  std::atomic<int> second{0};
  auto firstReceiver = std::make_unique<EventReceiverThread>("VeltrixPeer", counter(first), fBus.address());
  EXPECT_TRUE(waitUntil([&] { return send(1) == 0; }));
  const EventReceiverThread secondReceiver("VeltrixPeer", counter(second), fBus.address());
  firstReceiver.reset();
  EXPECT_TRUE(waitUntil([&] { return send(1) == 0; }));
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 1);
}

TEST_F(EventReceiverTest, EndsAtOnceOnABusThatHangs) {
  fBus.freeze();
  const auto start = std::chrono::steady_clock::now();
  {
    std::atomic<int> count{0};
    const EventReceiverThread receiver("VeltrixPeer", counter(count), fBus.address());
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(3));
}

TEST_F(EventReceiverTest, EndsWithoutABusAndAfterTheBusHasGone) {
  std::atomic<int> count{0};
  {
    const EventReceiverThread receiver("VeltrixPeer", counter(count), fBus.address());
    EXPECT_TRUE(waitUntil([&] { return send(1) == 0; }));
    fBus.stop();
  }
  const EventReceiverThread withoutBus("VeltrixPeer", counter(count), fBus.address());
  EXPECT_EQ(count, 1);
}

TEST_F(EventReceiverTest, ClaimedNameIsRefusedToAnother) {
  const BusHandle one = connectTo(fBus);
  const BusHandle other = connectTo(fBus);
  EXPECT_TRUE(claimBusName(one.get(), "com.aldmoor.Test").value());
  EXPECT_FALSE(claimBusName(other.get(), "com.aldmoor.Test").value());
  EXPECT_FALSE(claimBusName(other.get(), "no bus name").ok());
}

}  // namespace
}  // namespace veltrix
