#include "helper/typing/plasma_group.h"

#include <gmock/gmock.h>

#include "tests/helper/desktop/loop_runner.h"
#include "tests/support/private_bus.h"

namespace veltrix {
namespace {

constexpr const char* kService = "org.kde.keyboard";
constexpr const char* kObject = "/Layouts";
constexpr const char* kInterface = "org.kde.KeyboardLayouts";

int callArrived(sd_bus_message* call, void* service, sd_bus_error* error);

// The keyboard service of a desktop, as far as it is asked.
class KeyboardService {
 public:
  KeyboardService(sd_event* loop, const std::string& address, std::uint32_t group) : fGroup(group) {
    auto bus = openSessionBus(address, std::chrono::steady_clock::now() + std::chrono::seconds(10));
    EXPECT_TRUE(bus);
    fBus = std::move(bus.value());
    EXPECT_GE(sd_bus_add_filter(fBus.get(), nullptr, callArrived, this), 0);
    EXPECT_GE(sd_bus_request_name(fBus.get(), kService, 0), 0);
    EXPECT_GE(sd_bus_attach_event(fBus.get(), loop, SD_EVENT_PRIORITY_NORMAL), 0);
  }
  ~KeyboardService() { sd_bus_detach_event(fBus.get()); }
  KeyboardService(const KeyboardService&) = delete;
  KeyboardService& operator=(const KeyboardService&) = delete;

  void change(std::uint32_t group) {
    fGroup = group;
    EXPECT_GE(sd_bus_emit_signal(fBus.get(), kObject, kInterface, "layoutChanged", "u", group), 0);
  }
  void refuse() { fRefuses = true; }
  int calls() const { return fCalls; }
  bool wouldBeStarted() const { return fStarts; }  // by a call, were it not there

  int handle(sd_bus_message* call) {
    if (sd_bus_message_is_method_call(call, kInterface, "getLayout") <= 0 ||
        std::string_view(sd_bus_message_get_path(call)) != kObject) {
      return 0;
    }
    ++fCalls;
    fStarts = fStarts || sd_bus_message_get_auto_start(call) > 0;
    if (fRefuses) {
      sd_bus_reply_method_errorf(call, SD_BUS_ERROR_FAILED, "no");
    } else {
      sd_bus_reply_method_return(call, "u", fGroup);
    }
    return 1;
  }

 private:
  std::uint32_t fGroup;
  bool fRefuses = false;
  bool fStarts = false;
  int fCalls = 0;
  BusHandle fBus;
};

int callArrived(sd_bus_message* call, void* service, sd_bus_error* /*error*/) {
  return static_cast<KeyboardService*>(service)->handle(call);
}

class PlasmaGroupTest : public ::testing::Test {
 protected:
  PlasmaGroupTest() {
    auto bus = startSessionBus(fDaemon.address());
    EXPECT_TRUE(bus);
    fBus = std::move(bus.value());
    EXPECT_GE(sd_bus_attach_event(fBus.get(), fLoop.get(), SD_EVENT_PRIORITY_NORMAL), 0);
  }
  ~PlasmaGroupTest() override { sd_bus_detach_event(fBus.get()); }

  std::unique_ptr<KeyboardService> service(std::uint32_t group) {
    return std::make_unique<KeyboardService>(fLoop.get(), fDaemon.address(), group);
  }
  bool untilGroup(PlasmaGroup& source, std::optional<std::uint32_t> group) {
    return fLoop.runUntil([&] { return source.group() == group; });
  }
  // What was sent before has been taken in.
  void settle() {
    bool isAnswered = false;
    const auto answered = [](sd_bus_message*, void* flag, sd_bus_error*) {
      *static_cast<bool*>(flag) = true;
      return 0;
    };
    sd_bus_call_method_async(fBus.get(), nullptr, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                             "org.freedesktop.DBus", "GetId", answered, &isAnswered, "");
    EXPECT_TRUE(fLoop.runUntil([&] { return isAnswered; }));
  }

  testing::LoopRunner fLoop;
  testing::PrivateBus fDaemon;
  BusHandle fBus;
};

TEST_F(PlasmaGroupTest, GroupIsAskedFor) {
  const auto keyboard = service(2);
  PlasmaGroup source(fBus.get());
  EXPECT_EQ(source.group(), std::nullopt);
  EXPECT_TRUE(untilGroup(source, 2));
}

TEST_F(PlasmaGroupTest, ChangeOfTheGroupCounts) {
  const auto keyboard = service(0);
  PlasmaGroup source(fBus.get());
  ASSERT_TRUE(untilGroup(source, 0));
  keyboard->change(1);
  EXPECT_TRUE(untilGroup(source, 1));
  keyboard->change(0);
  EXPECT_TRUE(untilGroup(source, 0));
  EXPECT_EQ(keyboard->calls(), 1);
}

TEST_F(PlasmaGroupTest, WithoutTheServiceTheGroupIsUnknown) {
  PlasmaGroup source(fBus.get());
  settle();
  EXPECT_EQ(source.group(), std::nullopt);
}

TEST_F(PlasmaGroupTest, ServiceThatComesIsAskedAndForgottenWhenItGoes) {
  PlasmaGroup source(fBus.get());
  settle();
  auto keyboard = service(1);
  EXPECT_TRUE(untilGroup(source, 1));
  keyboard.reset();
  EXPECT_TRUE(untilGroup(source, std::nullopt));
  keyboard = service(2);
  EXPECT_TRUE(untilGroup(source, 2));
}

TEST_F(PlasmaGroupTest, ServiceIsNotStarted) {
  const auto keyboard = service(2);
  PlasmaGroup source(fBus.get());
  ASSERT_TRUE(untilGroup(source, 2));
  EXPECT_FALSE(keyboard->wouldBeStarted());
}

TEST_F(PlasmaGroupTest, RefusalLeavesTheGroupUnknown) {
  const auto keyboard = service(1);
  keyboard->refuse();
  PlasmaGroup source(fBus.get());
  ASSERT_TRUE(fLoop.runUntil([&] { return keyboard->calls() == 1; }));
  settle();
  EXPECT_EQ(source.group(), std::nullopt);
  keyboard->change(1);
  EXPECT_TRUE(untilGroup(source, 1));
}

TEST_F(PlasmaGroupTest, OthersThatSignalAreNotHeard) {
  const auto keyboard = service(1);
  PlasmaGroup source(fBus.get());
  ASSERT_TRUE(untilGroup(source, 1));
  auto stranger =
      openSessionBus(fDaemon.address(), std::chrono::steady_clock::now() + std::chrono::seconds(10));
  ASSERT_TRUE(stranger);
  sd_bus_emit_signal(stranger.value().get(), kObject, kInterface, "layoutChanged", "u", 3U);
  // The bus has passed it on once it answers.
  sd_bus_call_method(stranger.value().get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                     "org.freedesktop.DBus", "GetId", nullptr, nullptr, "");
  settle();
  EXPECT_EQ(source.group(), 1U);
}

}  // namespace
}  // namespace veltrix
