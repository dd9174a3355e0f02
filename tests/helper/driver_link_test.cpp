#include "helper/driver_link.h"

#include <gmock/gmock.h>
#include <systemd/sd-event.h>

#include <cerrno>
#include <csignal>

#include "tests/support/fake_driver.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using ::testing::ElementsAre;
using testing::FakeDriver;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class RecordedDriver final : public DriverListener {
 public:
  void driverReportChanged(const DriverReport& report) override { states.push_back(report.state); }
  void driverButton(const ButtonPacket& packet) override { buttons.push_back(packet); }
  void driverTyped(const KeysTypedPacket& packet) override { typed.push_back(packet.id); }
  void driverLamps(const LampsPacket& packet) override { lamps.push_back(packet.lit); }

  std::vector<DriverState> states;
  std::vector<ButtonPacket> buttons;
  std::vector<std::uint32_t> typed;
  std::vector<std::uint16_t> lamps;
};

class DriverLinkTest : public ::testing::Test {
 protected:
  static ConnectedDevice deviceOf(std::uint8_t speed) {
    ConnectedDevice device;
    device.found.entry.vendorID = 0xA1D0;
    device.record.record = DriverRecord{};
    device.record.record->speed = speed;
    return device;
  }

  void driveUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + seconds(10);
    while (!condition()) {
      ASSERT_LT(std::chrono::steady_clock::now(), end);
      sd_event_run(loop.get(), 10000);
    }
  }
  void driveUntilState(DriverState state) {
    driveUntil([&] { return link.report().state == state; });
  }
  void driveFor(milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) sd_event_run(loop.get(), 10000);
  }
  std::unique_ptr<FakeDriver> driver() { return std::make_unique<FakeDriver>(path); }
  std::unique_ptr<FakeDriver> connected() {
    auto fake = driver();
    EXPECT_TRUE(link.start());
    EXPECT_TRUE(fake->welcome());
    driveUntilState(DriverState::kConnected);
    return fake;
  }

  testing::TemporaryFolder folder;
  std::string path = folder / "driver.sock";
  EventLoopHandle loop = makeEventLoop();
  RecordedDriver told;
  DriverLink link{loop.get(), path, told};
};

TEST_F(DriverLinkTest, SaysThatTheDriverHasNotAnsweredYet) {
  auto fake = driver();
  ASSERT_TRUE(link.start());
  driveFor(milliseconds(20));
  EXPECT_EQ(link.report().state, DriverState::kConnecting);
  EXPECT_THAT(told.states, IsEmpty());
}

TEST_F(DriverLinkTest, TellsTheOrdersAfterTheGreeting) {
  auto fake = driver();
  ASSERT_TRUE(link.start());
  link.setDevices({deviceOf(7)});
  ASSERT_TRUE(fake->accept());
  driveFor(milliseconds(20));
  EXPECT_TRUE(fake->isSilent(milliseconds(0)));
  fake->sendStatus(DriverAnswer::kAccepted);
  driveUntilState(DriverState::kConnected);
  const auto order = fake->receive<ApplyPacket>();
  ASSERT_TRUE(order);
  EXPECT_EQ(order->record.speed, 7);
  EXPECT_EQ(link.report().version, "9.8.7");
  EXPECT_THAT(told.states, ElementsAre(DriverState::kConnected));
}

TEST_F(DriverLinkTest, FollowsADragInIntervalsToItsLastValue) {
  auto fake = connected();
  for (std::uint8_t speed = 1; speed <= 100; ++speed) link.setDevices({deviceOf(speed)});
  std::vector<int> speeds;
  driveUntil([&] {
    while (const auto order = fake->receive<ApplyPacket>(milliseconds(0)))
      speeds.push_back(order->record.speed);
    return !speeds.empty() && speeds.back() == 100;
  });
  EXPECT_EQ(speeds.front(), 1);
  EXPECT_LT(speeds.size(), 20U);
}

TEST_F(DriverLinkTest, WithdrawsATrackballThatHasGone) {
  auto fake = connected();
  link.setDevices({deviceOf(7)});
  ASSERT_TRUE(fake->receive<ApplyPacket>());
  driveFor(DriverOrders::kInterval);
  link.setDevices({});
  EXPECT_TRUE(fake->receive<WithdrawPacket>());
}

TEST_F(DriverLinkTest, HandsOnWhatTheDriverTells) {
  auto fake = connected();
  auto state = makePacket<DeviceStatePacket>();
  state.number = 3;
  state.condition = static_cast<std::uint16_t>(DeviceCondition::kBusy);
  state.error = EBUSY;
  auto button = makePacket<ButtonPacket>();
  button.slot = 9;
  auto typed = makePacket<KeysTypedPacket>();
  typed.id = 77;
  auto lamps = makePacket<LampsPacket>();
  lamps.lit = kNumLockLamp;
  fake->send(state);
  fake->send(button);
  fake->send(lamps);
  fake->send(typed);
  driveUntil([&] { return !told.typed.empty(); });
  ASSERT_THAT(link.report().devices, SizeIs(1));
  EXPECT_EQ(link.report().devices[0].error, EBUSY);
  ASSERT_THAT(told.buttons, SizeIs(1));
  EXPECT_EQ(told.buttons[0].slot, 9);
  EXPECT_THAT(told.typed, ElementsAre(77U));
  EXPECT_THAT(told.lamps, ElementsAre(kNumLockLamp));
}

TEST_F(DriverLinkTest, AsksForEveryButtonWhileItIsMonitored) {
  auto fake = connected();
  link.setMonitored(true);
  link.setMonitored(true);
  auto packet = fake->receive<MonitorPacket>();
  EXPECT_EQ(packet ? packet->wanted : 9, 1U);
  fake->hangUp();
  driveUntilState(DriverState::kNotRunning);
  driveUntil([&] { return fake->welcome(milliseconds(0)); });
  driveUntilState(DriverState::kConnected);
  packet = fake->receive<MonitorPacket>();
  EXPECT_EQ(packet ? packet->wanted : 9, 1U);
  link.setMonitored(false);
  packet = fake->receive<MonitorPacket>();
  EXPECT_EQ(packet ? packet->wanted : 9, 0U);
  EXPECT_TRUE(fake->isSilent(milliseconds(0)));
}

TEST_F(DriverLinkTest, SaysThatThereIsNoDriver) {
  ASSERT_TRUE(link.start());
  EXPECT_THAT(link.report().state, ::testing::AnyOf(DriverState::kNotInstalled, DriverState::kNotRunning));
  driveFor(milliseconds(600));
  EXPECT_THAT(told.states, SizeIs(1)) << "each attempt in vain is told";
}

TEST_F(DriverLinkTest, ConnectsAtOnceWhenTheSocketAppears) {
  ASSERT_TRUE(link.start());
  for (int i = 0; i < 3; ++i) {
    driveFor(milliseconds(300));
    auto fake = driver();
    driveFor(milliseconds(20));
    EXPECT_TRUE(fake->welcome(milliseconds(0)));
    driveUntilState(DriverState::kConnected);
  }
}

TEST_F(DriverLinkTest, TellsEverythingAgainWhenTheDriverHasRestarted) {
  auto fake = connected();
  link.setDevices({deviceOf(7)});
  ASSERT_TRUE(fake->receive<ApplyPacket>());
  fake.reset();
  driveUntil([&] { return !link.report().isConnected(); });
  fake = driver();
  driveUntil([&] { return fake->welcome(milliseconds(0)); });
  driveUntilState(DriverState::kConnected);
  EXPECT_TRUE(fake->receive<ApplyPacket>());
}

TEST_F(DriverLinkTest, TriesAgainAfterARefusal) {
  auto fake = driver();
  ASSERT_TRUE(link.start());
  ASSERT_TRUE(fake->refuse(DriverAnswer::kNotTheActiveUser));
  driveUntilState(DriverState::kOtherUser);
  driveUntil([&] { return fake->accept(milliseconds(0)); });
  EXPECT_EQ(link.report().state, DriverState::kOtherUser);
  fake->sendStatus(DriverAnswer::kAccepted);
  driveUntilState(DriverState::kConnected);
  EXPECT_THAT(told.states, ElementsAre(DriverState::kOtherUser, DriverState::kConnected));
}

TEST_F(DriverLinkTest, LeavesTheDriverToTheHelperThatHasReplacedIt) {
  auto fake = connected();
  fake->sendStatus(DriverAnswer::kReplaced);
  driveUntilState(DriverState::kReplaced);
  driveFor(milliseconds(600));
  EXPECT_FALSE(fake->accept(milliseconds(0)));
  link.tryAgain();
  EXPECT_TRUE(fake->welcome());
  driveUntilState(DriverState::kConnected);
}

TEST_F(DriverLinkTest, ReadsTheReasonThoughTheConnectionWasReset) {
  auto fake = connected();
  link.setDevices({deviceOf(7)});
  fake->sendStatus(DriverAnswer::kStopping);
  fake->hangUp();
  driveUntilState(DriverState::kNotRunning);
}

TEST_F(DriverLinkTest, EndsAConnectionThatBreaksTheRules) {
  auto fake = connected();
  fake->sendBytes("what", 4);
  driveUntilState(DriverState::kIncompatible);
  EXPECT_TRUE(fake->sawEnd());
}

TEST_F(DriverLinkTest, EndsAConnectionThatDoesNotBeginWithAGreeting) {
  auto fake = driver();
  ASSERT_TRUE(link.start());
  ASSERT_TRUE(fake->accept());
  fake->send(makePacket<ButtonPacket>());
  driveUntilState(DriverState::kIncompatible);
  EXPECT_THAT(told.buttons, IsEmpty());
}

TEST_F(DriverLinkTest, GivesUpADriverThatDoesNotRead) {
  std::signal(SIGPIPE, SIG_IGN);
  auto fake = connected();
  std::uint8_t speed = 0;
  const auto change = [&] {
    std::vector<ConnectedDevice> devices;
    ++speed;
    for (std::uint16_t product = 0; product < 200; ++product) {
      devices.push_back(deviceOf(speed));
      devices.back().found.entry.productID = product;
    }
    link.setDevices(devices);
    driveFor(DriverOrders::kInterval);
    return !link.report().isConnected();
  };
  driveUntil(change);
  EXPECT_EQ(link.report().state, DriverState::kNotRunning);
}

TEST_F(DriverLinkTest, NamesTheErrorOfASocketThatRefuses) {
  testing::TemporaryFolder other;
  DriverLink strange(loop.get(), other / std::string(200, 'x'), told);
  ASSERT_TRUE(strange.start());
  EXPECT_EQ(strange.report().state, DriverState::kUnreachable);
  EXPECT_EQ(strange.report().error, ENAMETOOLONG);
}

TypeKeysPacket somePress() {
  auto packet = makePacket<TypeKeysPacket>();
  packet.id = 5;
  packet.count = 1;
  packet.interval = 1;
  packet.step[0] = {30, 1};
  return packet;
}

TEST_F(DriverLinkTest, TakesKeysToTheDriverAndItsAnswerBack) {
  EXPECT_FALSE(link.typeKeys(somePress()));
  EXPECT_FALSE(link.stopTyping());
  auto fake = connected();
  EXPECT_TRUE(link.typeKeys(somePress()));
  EXPECT_TRUE(link.stopTyping());
  const auto keys = fake->receive<TypeKeysPacket>();
  ASSERT_TRUE(keys);
  EXPECT_EQ(keys->id, 5U);
  EXPECT_TRUE(fake->receive<StopTypingPacket>());
  auto answer = makePacket<KeysTypedPacket>();
  answer.id = 5;
  fake->send(answer);
  driveUntil([&] { return !told.typed.empty(); });
  EXPECT_THAT(told.typed, ElementsAre(5U));
}

TEST_F(DriverLinkTest, HangsUpOnADriverThatTakesNoKeysAndConnectsAnew) {
  auto fake = connected();
  int sent = 0;
  while (link.typeKeys(somePress())) ASSERT_LT(++sent, 100000);
  EXPECT_EQ(link.report().state, DriverState::kConnected);
  driveUntilState(DriverState::kNotRunning);
  EXPECT_TRUE(fake->sawEnd());
  EXPECT_FALSE(link.typeKeys(somePress()));
}

}  // namespace
}  // namespace veltrix
