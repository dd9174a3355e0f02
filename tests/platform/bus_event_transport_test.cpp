#include "platform/bus_event_transport.h"

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <future>
#include <vector>

#include "platform/event_receiver.h"
#include "tests/support/environment.h"
#include "tests/support/private_bus.h"
#include "tests/support/wait_until.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::PrivateBus;
using testing::waitUntil;

constexpr std::uint32_t kClass = 0x41564C58;
constexpr std::uint32_t kType = 0x56584374;
constexpr milliseconds kPatience = seconds(10);
// What a bounded call may take on a busy machine; a call that waits for the wrong thing never comes back.
constexpr milliseconds kSoon = seconds(3);

enum RequestId : std::uint32_t { kEcho = 1, kNothing, kRefuse, kHold, kNote };

ProcessSerialNumber self() {
  return {.startTime = 0, .pid = static_cast<std::uint32_t>(getpid())};
}

Event request(std::uint32_t id, const std::vector<std::byte>& data = {}) {
  Event event(EventAddress("VeltrixPeer", self()), kClass, id);
  EXPECT_EQ(event.putParameter(kDirectParameter, kType, data), 0);
  return event;
}

// An application that takes events; kHold keeps it busy until release().
class Peer {
 public:
  explicit Peer(const PrivateBus& bus)
      : fThread(
            "VeltrixPeer",
            [this](const IncomingEvent& event, EventReply* reply) { return take(event, reply); },
            bus.address()) {
    const auto transport = makeBusEventTransport(bus.address());
    EventReply reply;
    EXPECT_TRUE(
        waitUntil([&] { return transport->sendWaitingForReply(request(kNothing), kPatience, &reply) == 0; }));
  }
  ~Peer() { release(); }

  void release() {
    if (!fReleased.exchange(true))
      fRelease.set_value();
  }
  int notes() const { return fNotes; }

 private:
  std::int32_t take(const IncomingEvent& event, EventReply* reply) {
    if (event.eventId == kEcho)
      *reply = EventReply(event.parameter);
    if (event.eventId == kRefuse)
      return kEventNotHandled;
    if (event.eventId == kHold)
      fReleaseFuture.wait();
    if (event.eventId == kNote)
      ++fNotes;
    return 0;
  }

  std::promise<void> fRelease;
  std::shared_future<void> fReleaseFuture{fRelease.get_future()};
  std::atomic<bool> fReleased{false};
  std::atomic<int> fNotes{0};
  EventReceiverThread fThread;
};

class BusEventTransport : public ::testing::Test {
 protected:
  std::int32_t send(const Event& event, milliseconds timeout = kPatience) {
    const auto start = std::chrono::steady_clock::now();
    const std::int32_t status = fTransport->sendWaitingForReply(event, timeout, &fReply);
    fTook = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
    return status;
  }

  PrivateBus fBus;
  std::unique_ptr<EventTransport> fTransport = makeBusEventTransport(fBus.address());
  EventReply fReply;
  milliseconds fTook{0};
};

std::size_t openDescriptors() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
  return count;
}

TEST_F(BusEventTransport, BringsTheAnswerBack) {
  const Peer peer(fBus);
  const std::vector<std::byte> bytes = {std::byte{0}, std::byte{255}, std::byte{10}};
  ASSERT_EQ(send(request(kEcho, bytes)), 0);
  EXPECT_EQ(fReply.parameter().type(), kType);
  EXPECT_EQ(fReply.parameter().data(), bytes);
}

TEST_F(BusEventTransport, CarriesTheLargestParameterBothWays) {
  const Peer peer(fBus);
  std::vector<std::byte> bytes(kMaximumEventBytes);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::byte>(i * 31);
  ASSERT_EQ(send(request(kEcho, bytes)), 0);
  EXPECT_EQ(fReply.parameter().data(), bytes);
}

TEST_F(BusEventTransport, AnswerWithoutParameterHasNoneToRead) {
  const Peer peer(fBus);
  ASSERT_EQ(send(request(kNothing)), 0);
  EXPECT_EQ(fReply.parameter().read(kDirectParameter, kType, nullptr, 0, nullptr), kEventParameterMissing);
}

TEST_F(BusEventTransport, NobodyAtTheAddressIsNoSuchProcess) {
  EXPECT_EQ(send(request(kEcho)), kEventNoSuchProcess);
}

TEST_F(BusEventTransport, RefusalIsNotHandled) {
  const Peer peer(fBus);
  EXPECT_EQ(send(request(kRefuse)), kEventNotHandled);
}

TEST_F(BusEventTransport, PeerThatTakesNoEventsIsNotHandled) {
  const auto bystander = openSessionBus(fBus.address(), std::chrono::steady_clock::now() + kPatience);
  ASSERT_TRUE(claimBusName(bystander.value().get(), EventAddress("VeltrixPeer", self()).busName()).value());
  auto status = std::async(std::launch::async, [this] { return send(request(kEcho)); });
  while (status.wait_for(milliseconds(0)) != std::future_status::ready) {
    if (sd_bus_process(bystander.value().get(), nullptr) == 0)
      sd_bus_wait(bystander.value().get(), 1000);
  }
  EXPECT_EQ(status.get(), kEventNotHandled);
}

TEST_F(BusEventTransport, BusyPeerTimesOut) {
  Peer peer(fBus);
  EXPECT_EQ(send(request(kHold), milliseconds(50)), kEventTimedOut);
  EXPECT_GE(fTook, milliseconds(50));
  EXPECT_LT(fTook, kSoon);
}

TEST_F(BusEventTransport, LateAnswerIsNotTakenForTheNextOne) {
  Peer peer(fBus);
  EXPECT_EQ(send(request(kHold, {std::byte{1}}), milliseconds(20)), kEventTimedOut);
  peer.release();
  ASSERT_EQ(send(request(kEcho, {std::byte{2}})), 0);
  EXPECT_EQ(fReply.parameter().data(), std::vector<std::byte>{std::byte{2}});
}

TEST_F(BusEventTransport, PeerThatDiesBeforeItAnswersIsAnInvalidConnection) {
  auto doomed = openSessionBus(fBus.address(), std::chrono::steady_clock::now() + kPatience);
  ASSERT_TRUE(claimBusName(doomed.value().get(), EventAddress("VeltrixPeer", self()).busName()).value());
  auto status = std::async(std::launch::async, [this] { return send(request(kEcho)); });
  EXPECT_TRUE(waitUntil([&] {
    sd_bus_message* raw = nullptr;
    sd_bus_process(doomed.value().get(), &raw);
    const BusMessageHandle message(raw);
    if (raw == nullptr || sd_bus_message_is_method_call(raw, kEventsInterface, "Send") <= 0)
      return false;
    doomed.value().reset();
    return true;
  }));
  EXPECT_EQ(status.get(), kEventConnectionInvalid);
  EXPECT_LT(fTook, kSoon);
}

TEST_F(BusEventTransport, NoBusIsAnInvalidConnection) {
  fBus.stop();
  EXPECT_EQ(send(request(kEcho)), kEventConnectionInvalid);
  EXPECT_EQ(fTransport->sendWithoutReply(request(kEcho)), kEventConnectionInvalid);
}

TEST_F(BusEventTransport, NoSessionAtAllIsAnInvalidConnection) {
  const testing::ScopedEnvironment noAddress("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
  const testing::ScopedEnvironment noRuntimeFolder("XDG_RUNTIME_DIR", std::nullopt);
  fTransport = makeBusEventTransport();
  EXPECT_EQ(send(request(kEcho)), kEventConnectionInvalid);
}

TEST_F(BusEventTransport, SessionBusIsTakenFromTheEnvironment) {
  const Peer peer(fBus);
  const testing::ScopedEnvironment address("DBUS_SESSION_BUS_ADDRESS", fBus.address());
  fTransport = makeBusEventTransport();
  EXPECT_EQ(send(request(kNothing)), 0);
}

TEST_F(BusEventTransport, BusThatHangsTimesOutWhileConnecting) {
  fBus.freeze();
  EXPECT_EQ(send(request(kEcho), milliseconds(50)), kEventTimedOut);
  EXPECT_LT(fTook, kSoon);
  EXPECT_EQ(fTransport->sendWithoutReply(request(kEcho)), kEventTimedOut);
}

TEST_F(BusEventTransport, BusThatHangsLaterTimesOutAndIsUsedAgain) {
  const Peer peer(fBus);
  ASSERT_EQ(send(request(kNothing)), 0);
  fBus.freeze();
  EXPECT_EQ(send(request(kNothing), milliseconds(50)), kEventTimedOut);
  EXPECT_LT(fTook, kSoon);
  fBus.thaw();
  EXPECT_EQ(send(request(kNothing)), 0);
}

TEST_F(BusEventTransport, BusThatDiesDuringTheCallIsAnInvalidConnection) {
  Peer peer(fBus);
  auto status = std::async(std::launch::async, [this] { return send(request(kHold)); });
  EXPECT_EQ(status.wait_for(milliseconds(50)), std::future_status::timeout);
  fBus.stop();
  EXPECT_EQ(status.get(), kEventConnectionInvalid);
  EXPECT_LT(fTook, kSoon);
}

TEST_F(BusEventTransport, ConnectsAnewAfterTheBusHasGone) {
  {
    const Peer peer(fBus);
    ASSERT_EQ(send(request(kNothing)), 0);
  }
  fBus.stop();
  fBus.start();
  const Peer peer(fBus);
  EXPECT_EQ(send(request(kNothing)), 0);
}

TEST_F(BusEventTransport, EventsWithoutReplyDoNotWaitForThePeer) {
  Peer peer(fBus);
  EXPECT_EQ(send(request(kHold), milliseconds(20)), kEventTimedOut);
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < 100; ++i) ASSERT_EQ(fTransport->sendWithoutReply(request(kNote)), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, kSoon);
  EXPECT_EQ(peer.notes(), 0);
  peer.release();
  EXPECT_TRUE(waitUntil([&] { return peer.notes() == 100; }));
}

TEST_F(BusEventTransport, EventsWithoutReplyAreOutWhenTheSenderEndsAtOnce) {
  const Peer peer(fBus);
  EXPECT_EQ(makeBusEventTransport(fBus.address())->sendWithoutReply(request(kNote)), 0);
  EXPECT_TRUE(waitUntil([&] { return peer.notes() == 1; }));
}

TEST_F(BusEventTransport, FailuresLeakNoDescriptor) {
  EXPECT_EQ(send(request(kEcho)), kEventNoSuchProcess);
  const std::size_t before = openDescriptors();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(send(request(kEcho)), kEventNoSuchProcess);
  fBus.freeze();
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(makeBusEventTransport(fBus.address())->sendWithoutReply(request(kEcho)), kEventTimedOut);
  }
  fBus.thaw();
  EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace veltrix
