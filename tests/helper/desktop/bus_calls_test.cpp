#include "helper/desktop/bus_calls.h"

#include <gmock/gmock.h>
#include <systemd/sd-bus.h>

#include "helper/commands/command_table.h"
#include "tests/helper/desktop/fake_service.h"
#include "tests/helper/desktop/loop_runner.h"
#include "tests/support/environment.h"
#include "tests/support/private_bus.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using testing::FakeService;
using ::testing::HasSubstr;
using testing::wordOf;
using namespace std::chrono_literals;

BusHandle connectionTo(const std::string& address, sd_event* loop) {
  auto bus = openSessionBus(address, std::chrono::steady_clock::now() + 10s);
  EXPECT_TRUE(bus);
  sd_bus_attach_event(bus.value().get(), loop, SD_EVENT_PRIORITY_NORMAL);
  return std::move(bus.value());
}

// A session bus, and a second bus in the place of the system's.
class BusCallsTest : public ::testing::Test {
 protected:
  Status call(const BusAttempt& attempt) {
    return fLoop.run([&](Ended ended) { fCalls.call(attempt, std::move(ended)); });
  }
  // The attempt of a command on this desktop that is a call.
  static BusAttempt rowOf(std::uint16_t command, std::uint8_t desktop) {
    for (const CommandRow& row : rowsOfCommand(command)) {
      if ((row.desktops & desktop) != 0 && std::holds_alternative<BusAttempt>(row.attempt)) {
        return std::get<BusAttempt>(row.attempt);
      }
    }
    ADD_FAILURE() << "no call for " << command;
    return {};
  }

  testing::LoopRunner fLoop;
  testing::PrivateBus fSession;
  testing::PrivateBus fSystem;
  testing::ScopedEnvironment fSystemAddress{"DBUS_SYSTEM_BUS_ADDRESS", fSystem.address()};
  BusHandle fConnection = connectionTo(fSession.address(), fLoop.get());
  SessionBusCalls fCalls{fLoop.get(), fConnection.get(), {500ms, 5000ms}};
};

TEST_F(BusCallsTest, ShortcutOfTheWindowManagerIsInvoked) {
  FakeService shortcuts(fLoop.get(), fSession.address(), "org.kde.kglobalaccel");
  EXPECT_EQ(wordOf(call(rowOf(75, kOnPlasma))), "done");
  EXPECT_THAT(
      shortcuts.calls(),
      ElementsAre("/component/kwin org.kde.kglobalaccel.Component.invokeShortcut(\"Window Minimize\")"));
}

TEST_F(BusCallsTest, ArgumentsOfEveryKindArrive) {
  FakeService service(fLoop.get(), fSession.address(), "org.example.Service");
  BusAttempt attempt{BusAttempt::Bus::kSession, "org.example.Service", "/", "org.example.Service", "One"};
  attempt.arguments = {true, std::int32_t{-5}, "text"};
  EXPECT_EQ(wordOf(call(attempt)), "done");
  attempt.arguments = {std::uint32_t{7}, BusOptions{"interactive", true}};
  EXPECT_EQ(wordOf(call(attempt)), "done");
  EXPECT_THAT(service.calls(), ElementsAre("/ org.example.Service.One(true, -5, \"text\")",
                                           "/ org.example.Service.One(7u, {\"interactive\": true})"));
}

TEST_F(BusCallsTest, PlasmasFieldForCommandsIsStarted) {
  FakeService runner(fLoop.get(), fSession.address(), "org.kde.krunner");
  EXPECT_EQ(wordOf(call(rowOf(101, kOnPlasma))), "done");
  EXPECT_THAT(runner.calls(), ElementsAre("/App org.kde.krunner.App.display() starts"));
}

TEST_F(BusCallsTest, QuestionsBeforeLeavingAreThoseOfTheDesktop) {
  FakeService plasma(fLoop.get(), fSession.address(), "org.kde.LogoutPrompt");
  FakeService gnome(fLoop.get(), fSession.address(), "org.gnome.SessionManager");
  for (const std::uint16_t code : std::initializer_list<std::uint16_t>{163, 166, 167}) {
    EXPECT_EQ(wordOf(call(rowOf(code, kOnPlasma))), "done");
    EXPECT_EQ(wordOf(call(rowOf(code, kOnGnome))), "done");
  }
  EXPECT_THAT(plasma.calls(), ElementsAre("/LogoutPrompt org.kde.LogoutPrompt.promptLogout() starts",
                                          "/LogoutPrompt org.kde.LogoutPrompt.promptReboot() starts",
                                          "/LogoutPrompt org.kde.LogoutPrompt.promptShutDown() starts"));
  EXPECT_THAT(gnome.calls(), ElementsAre("/org/gnome/SessionManager org.gnome.SessionManager.Logout(0u)",
                                         "/org/gnome/SessionManager org.gnome.SessionManager.Reboot()",
                                         "/org/gnome/SessionManager org.gnome.SessionManager.Shutdown()"));
}

TEST_F(BusCallsTest, AreaIsChosenInThePortalsDialog) {
  FakeService portal(fLoop.get(), fSession.address(), "org.freedesktop.portal.Desktop");
  EXPECT_EQ(wordOf(call(rowOf(157, kOnOther))), "done");
  EXPECT_THAT(
      portal.calls(),
      ElementsAre("/org/freedesktop/portal/desktop org.freedesktop.portal.Screenshot.Screenshot(\"\", "
                  "{\"interactive\": true}) starts"));
}

TEST_F(BusCallsTest, LogindLocksSuspendsAndHibernatesOnTheSystemBus) {
  FakeService logind(fLoop.get(), fSystem.address(), "org.freedesktop.login1");
  for (const std::uint16_t code : std::initializer_list<std::uint16_t>{160, 164, 165}) {
    EXPECT_EQ(wordOf(call(rowOf(code, kOnGnome))), "done");
  }
  EXPECT_THAT(
      logind.calls(),
      ElementsAre("/org/freedesktop/login1/session/auto org.freedesktop.login1.Session.Lock() starts",
                  "/org/freedesktop/login1 org.freedesktop.login1.Manager.Suspend(true) starts asks",
                  "/org/freedesktop/login1 org.freedesktop.login1.Manager.Hibernate(true) starts asks"));
}

TEST_F(BusCallsTest, DisplayManagerShowsItsGreeter) {
  FakeService manager(fLoop.get(), fSystem.address(), "org.freedesktop.DisplayManager");
  EXPECT_EQ(wordOf(call(rowOf(162, kOnXfce))), "done");
  EXPECT_THAT(manager.calls(), ElementsAre("/org/freedesktop/DisplayManager/Seat0 "
                                           "org.freedesktop.DisplayManager.Seat.SwitchToGreeter() starts"));
}

// Whatever the table calls is a name that the bus takes.
TEST_F(BusCallsTest, EveryCallOfTheTableCanBeSent) {
  for (const CommandRow& row : commandTable()) {
    if (const auto* attempt = std::get_if<BusAttempt>(&row.attempt)) {
      const Status status = call(*attempt);
      ASSERT_FALSE(status);
      EXPECT_THAT(status.error().message,
                  ::testing::AnyOf(HasSubstr("not provided by any .service files"),
                                   HasSubstr("does not exist"), HasSubstr("no owner")))
          << row.command;
    }
  }
}

TEST_F(BusCallsTest, RefusalIsSaidInOneLine) {
  FakeService logind(fLoop.get(), fSystem.address(), "org.freedesktop.login1");
  logind.refuse("org.freedesktop.DBus.Error.AccessDenied", "Permission\ndenied");
  EXPECT_EQ(wordOf(call(rowOf(164, kOnGnome))), "Suspend: Permission?denied");
}

TEST_F(BusCallsTest, SilentServiceEndsAtTheTimeOut) {
  FakeService shortcuts(fLoop.get(), fSession.address(), "org.kde.kglobalaccel");
  shortcuts.answerNothing();
  EXPECT_EQ(wordOf(call(rowOf(75, kOnPlasma))), "invokeShortcut: no answer");
}

TEST_F(BusCallsTest, QuestionToAPersonMayTakeLonger) {
  FakeService logind(fLoop.get(), fSystem.address(), "org.freedesktop.login1");
  logind.answerNothing();
  bool ended = false;
  fCalls.call(rowOf(164, kOnGnome), [&](const Status&) { ended = true; });
  EXPECT_EQ(wordOf(call(rowOf(160, kOnGnome))), "Lock: no answer");
  EXPECT_FALSE(ended);
}

TEST_F(BusCallsTest, QuestionOfGnomeIsAskedThoughItsAnswerIsAwaited) {
  FakeService gnome(fLoop.get(), fSession.address(), "org.gnome.SessionManager");
  gnome.refuse("org.gnome.SessionManager.LockedDown", "locked down");
  EXPECT_EQ(wordOf(call(rowOf(167, kOnGnome))), "Shutdown: locked down");
  gnome.answerNothing();
  EXPECT_EQ(wordOf(call(rowOf(166, kOnGnome))), "done");
  EXPECT_EQ(wordOf(call(rowOf(163, kOnGnome))), "Logout: no answer");
}

TEST_F(BusCallsTest, HungSystemBusDelaysNobody) {
  fSystem.freeze();
  FakeService shortcuts(fLoop.get(), fSession.address(), "org.kde.kglobalaccel");
  std::string outcome;
  const auto begin = std::chrono::steady_clock::now();
  fCalls.call(rowOf(160, kOnGnome), [&](const Status& status) { outcome = wordOf(status); });
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 250ms);
  EXPECT_EQ(wordOf(call(rowOf(75, kOnPlasma))), "done");
  EXPECT_EQ(outcome, "");
  EXPECT_TRUE(fLoop.runUntil([&] { return !outcome.empty(); }));
  EXPECT_EQ(outcome, "Lock: no answer");
  fSystem.thaw();
}

TEST_F(BusCallsTest, SystemBusThatWentIsConnectedAnew) {
  {
    FakeService logind(fLoop.get(), fSystem.address(), "org.freedesktop.login1");
    EXPECT_EQ(wordOf(call(rowOf(160, kOnGnome))), "done");
  }
  fSystem.stop();
  EXPECT_NE(wordOf(call(rowOf(160, kOnGnome))), "done");
  fSystem.start();
  FakeService logind(fLoop.get(), fSystem.address(), "org.freedesktop.login1");
  EXPECT_EQ(wordOf(call(rowOf(160, kOnGnome))), "done");
}

TEST_F(BusCallsTest, WithoutASystemBusTheCallFails) {
  const testing::ScopedEnvironment nowhere("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus");
  EXPECT_THAT(wordOf(call(rowOf(160, kOnGnome))), HasSubstr("cannot connect to the system bus"));
}

TEST_F(BusCallsTest, EndWithCallsUnderWayTellsNobody) {
  FakeService shortcuts(fLoop.get(), fSession.address(), "org.kde.kglobalaccel");
  bool told = false;
  {
    SessionBusCalls calls(fLoop.get(), fConnection.get(), {500ms, 500ms});
    calls.call(rowOf(75, kOnPlasma), [&](const Status&) { told = true; });
  }
  EXPECT_EQ(wordOf(call(rowOf(75, kOnPlasma))), "done");
  EXPECT_FALSE(told);
}

}  // namespace
}  // namespace veltrix
