#include "helper/jump/accessibility_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "platform/event_loop.h"
#include "platform/session_bus.h"
#include "tests/support/environment.h"
#include "tests/support/private_bus.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ScopedEnvironment;
using Clock = std::chrono::steady_clock;

int getEnabled(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/, const char* /*property*/,
               sd_bus_message* reply, void* enabled, sd_bus_error* /*error*/) {
  return sd_bus_message_append(reply, "b", static_cast<int>(*static_cast<bool*>(enabled)));
}

constexpr sd_bus_vtable kStatusTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("IsEnabled", "b", getEnabled, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE),
    SD_BUS_VTABLE_END,
};

BusHandle connect(const std::string& address, sd_event* loop) {
  BusHandle bus = std::move(openSessionBus(address, Clock::now() + std::chrono::seconds(10)).value());
  EXPECT_GE(sd_bus_attach_event(bus.get(), loop, 0), 0);
  return bus;
}

// Stands in for the accessibility service.
class FakeService {
 public:
  FakeService(const std::string& address, sd_event* loop, bool enabled) : fEnabled(enabled) {
    fBus = connect(address, loop);
    EXPECT_GE(sd_bus_add_object_vtable(fBus.get(), nullptr, "/org/a11y/bus", "org.a11y.Status", kStatusTable,
                                       &fEnabled),
              0);
    EXPECT_GE(sd_bus_request_name(fBus.get(), "org.a11y.Bus", 0), 0);
  }
  ~FakeService() { sd_bus_detach_event(fBus.get()); }
  FakeService(const FakeService&) = delete;
  FakeService& operator=(const FakeService&) = delete;

  void setEnabled(bool enabled) {
    fEnabled = enabled;
    EXPECT_GE(
        sd_bus_emit_properties_changed(fBus.get(), "/org/a11y/bus", "org.a11y.Status", "IsEnabled", nullptr),
        0);
  }

 private:
  bool fEnabled;
  BusHandle fBus;
};

class AccessibilityWatchTest : public ::testing::Test {
 protected:
  ~AccessibilityWatchTest() override { sd_bus_detach_event(fConnection.get()); }

  void start() { ASSERT_TRUE(fWatch.start(fConnection.get())); }
  void startService(bool enabled) {
    fService = std::make_unique<FakeService>(fBus.address(), fLoop.get(), enabled);
  }
  // Runs the loop until the watch says so.
  bool runUntilOn(bool isOn) {
    const auto end = Clock::now() + std::chrono::seconds(10);
    while (fWatch.isOn() != isOn && Clock::now() < end) sd_event_run(fLoop.get(), 10'000);
    return fWatch.isOn() == isOn;
  }
  // Everything that was sent before has been answered and taken.
  void settle() {
    bool done = false;
    const auto note = [](sd_bus_message*, void* flag, sd_bus_error*) {
      *static_cast<bool*>(flag) = true;
      return 0;
    };
    ASSERT_GE(
        sd_bus_call_method_async(fConnection.get(), nullptr, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                 "org.freedesktop.DBus.Peer", "Ping", note, &done, ""),
        0);
    while (!done) ASSERT_GE(sd_event_run(fLoop.get(), UINT64_MAX), 0);
  }

  testing::PrivateBus fBus;
  EventLoopHandle fLoop = makeEventLoop();
  BusHandle fConnection = connect(fBus.address(), fLoop.get());
  std::unique_ptr<FakeService> fService;
  std::vector<bool> fChanges;
  AccessibilityWatch fWatch{[this](bool isOn) { fChanges.push_back(isOn); }};
};

TEST_F(AccessibilityWatchTest, IsOffWithoutTheService) {
  start();
  settle();
  EXPECT_FALSE(fWatch.isOn());
  EXPECT_THAT(fChanges, IsEmpty());
}

TEST_F(AccessibilityWatchTest, AsksAServiceThatIsThereAlready) {
  startService(true);
  start();
  EXPECT_TRUE(runUntilOn(true));
  EXPECT_THAT(fChanges, ElementsAre(true));
}

TEST_F(AccessibilityWatchTest, IsOffWhileTheServiceIsTurnedOff) {
  startService(false);
  start();
  settle();
  EXPECT_THAT(fChanges, IsEmpty());
}

TEST_F(AccessibilityWatchTest, FollowsTheSwitch) {
  startService(false);
  start();
  settle();
  fService->setEnabled(true);
  EXPECT_TRUE(runUntilOn(true));
  fService->setEnabled(false);
  EXPECT_TRUE(runUntilOn(false));
  EXPECT_THAT(fChanges, ElementsAre(true, false));
}

TEST_F(AccessibilityWatchTest, FollowsTheServiceAsItComesAndGoes) {
  start();
  settle();
  startService(true);
  EXPECT_TRUE(runUntilOn(true));
  fService.reset();
  EXPECT_TRUE(runUntilOn(false));
  startService(true);
  EXPECT_TRUE(runUntilOn(true));
}

TEST(X11Session, NeedsADisplayAndNoWayland) {
  const ScopedEnvironment display("DISPLAY", ":7");
  const ScopedEnvironment wayland("WAYLAND_DISPLAY", std::nullopt);
  const ScopedEnvironment type("XDG_SESSION_TYPE", std::nullopt);
  EXPECT_TRUE(isX11Session());
  for (const char* known : {"x11", "tty", "unspecified"}) {
    const ScopedEnvironment other("XDG_SESSION_TYPE", known);
    EXPECT_TRUE(isX11Session()) << known;
  }
  {
    const ScopedEnvironment none("DISPLAY", std::nullopt);
    EXPECT_FALSE(isX11Session());
  }
  {
    const ScopedEnvironment session("XDG_SESSION_TYPE", "wayland");
    EXPECT_FALSE(isX11Session());
  }
  const ScopedEnvironment compositor("WAYLAND_DISPLAY", "wayland-0");
  EXPECT_FALSE(isX11Session());
}

}  // namespace
}  // namespace veltrix
