#include "helper/desktop/program_starter.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>

#include <cerrno>
#include <set>

#include "tests/helper/desktop/desktop_fixture.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using namespace std::chrono_literals;

class ProgramStarterTest : public testing::DesktopFixture {
 protected:
  Status runToItsEnd(const Program& program) {
    return outcomeOf([&](ProgramStarter::Exit exit) { EXPECT_TRUE(fStarter.start(program, exit)); });
  }
  Status watched(const Program& program, std::chrono::microseconds grace) {
    return outcomeOf([&](ProgramStarter::Exit ended) { fStarter.startAndWatch(program, grace, ended); });
  }
  void endHangingPrograms() const {
    for (const std::string& name : testing::namesIn(fFolder / "pids")) {
      kill(std::stoi(name), SIGKILL);
    }
  }
  // Runs until it is killed.
  void addHangingProgram(const std::string& name) {
    std::filesystem::create_directories(fFolder / "pids");
    writeScript("bin/" + name, "echo > \"$RECORDS/../pids/$$\"\nexec /bin/sleep 1000\n");
  }
  bool noneIsLeft() {
    return runUntil([this] { return fStarter.running() == 0; }) && waitpid(-1, nullptr, WNOHANG) == -1 &&
           errno == ECHILD;
  }

  ProgramStarter fStarter{fLoop.get(), journal()};
};

TEST_F(ProgramStarterTest, ProgramOfPathGetsItsArgumentsAsTheyAre) {
  addProgram("thing");
  EXPECT_TRUE(runToItsEnd({.arguments = {"thing", "", "$(reboot); 'a b' *\n"}}));
  EXPECT_THAT(onlyRecord(), ElementsAre("thing", "", "$(reboot); 'a b' *\n"));
}

TEST_F(ProgramStarterTest, ProgramRunsInTheHomeFolderUnlessItWantsAnother) {
  const Program program{.arguments = {"/bin/pwd"}};
  EXPECT_TRUE(runToItsEnd(program));
  EXPECT_EQ(journalText(), home() + "\n");
  EXPECT_TRUE(runToItsEnd({.arguments = {"/bin/pwd"}, .folder = fFolder / "etc"}));
  EXPECT_EQ(journalText(), home() + "\n" + (fFolder / "etc") + "\n");
}

TEST_F(ProgramStarterTest, OutputAndErrorsGoToTheJournalUnderTheProgramsName) {
  writeScript("bin/thing", "echo said; echo bad >&2\n");
  EXPECT_TRUE(runToItsEnd({.arguments = {fFolder / "bin/thing"}}));
  EXPECT_EQ(journalText(), "said\nbad\n");
  EXPECT_TRUE(runToItsEnd({.arguments = {"thing"}, .identifier = "other"}));
  EXPECT_THAT(fIdentifiers, ElementsAre("thing", "other"));
}

TEST_F(ProgramStarterTest, EnvironmentIsTheSessionsWithoutWhatIsTheHelpersOwn) {
  const testing::ScopedEnvironment session("SESSION_VARIABLE", "kept as it is");
  const testing::ScopedEnvironment resources("VELTRIX_RESOURCES", "/somewhere");
  const testing::ScopedEnvironment token("XDG_ACTIVATION_TOKEN", "token");
  const testing::ScopedEnvironment startup("DESKTOP_STARTUP_ID", "id");
  const testing::ScopedEnvironment notify("NOTIFY_SOCKET", "/run/notify");
  EXPECT_TRUE(runToItsEnd({.arguments = {"/usr/bin/env"}}));
  const std::string text = journalText();
  EXPECT_THAT(text, HasSubstr("SESSION_VARIABLE=kept as it is\n"));
  EXPECT_THAT(text, HasSubstr("HOME=" + home() + "\n"));
  for (const char* own : {"VELTRIX_", "XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID", "NOTIFY_SOCKET"}) {
    EXPECT_THAT(text, Not(HasSubstr(own)));
  }
}

TEST_F(ProgramStarterTest, ReasonNamesTheProgramAndHowItEnded) {
  writeScript("bin/failing", "exit 7\n");
  writeScript("bin/killed", "kill -SEGV $$\n");
  EXPECT_EQ(reasonOf(runToItsEnd({.arguments = {"failing"}})), "failing ended with exit status 7");
  EXPECT_EQ(reasonOf(runToItsEnd({.arguments = {"killed"}})), "killed ended with signal SIGSEGV");
  EXPECT_EQ(reasonOf(runToItsEnd({.arguments = {"failing"}, .title = "it"})), "it ended with exit status 7");
}

TEST_F(ProgramStarterTest, ProgramThatIsMissingIsReportedAtOnce) {
  EXPECT_EQ(reasonOf(fStarter.start({.arguments = {"missing"}})), "missing is not installed");
  EXPECT_EQ(reasonOf(fStarter.start({.arguments = {}})), "no program is named");
  EXPECT_EQ(reasonOf(fStarter.start({.arguments = {"/no/such\nthing"}})),
            "cannot start /no/such?thing: No such file or directory");
  EXPECT_EQ(fStarter.running(), 0U);
}

TEST_F(ProgramStarterTest, EveryProgramIsCollected) {
  addProgram("thing");
  for (int count = 0; count < 20; ++count) {
    ASSERT_TRUE(fStarter.start({.arguments = {"thing"}}));
  }
  EXPECT_EQ(fStarter.running(), 20U);
  EXPECT_TRUE(noneIsLeft());
  EXPECT_EQ(records().size(), 20U);
}

TEST_F(ProgramStarterTest, WatchedProgramThatFailsIsReportedAndOneThatEndsWellIsNot) {
  writeScript("bin/failing", "exit 1\n");
  addProgram("thing");
  EXPECT_EQ(reasonOf(watched({.arguments = {"failing"}}, 20s)), "failing ended with exit status 1");
  EXPECT_TRUE(watched({.arguments = {"thing"}}, 20s));
  EXPECT_EQ(reasonOf(watched({.arguments = {"missing"}}, 20s)), "missing is not installed");
}

TEST_F(ProgramStarterTest, ProgramThatGoesOnDelaysNothingAndIsWell) {
  addHangingProgram("hanging");
  int ticks = 0;
  struct Tick {
    static int fire(sd_event_source* source, std::uint64_t /*time*/, void* count) {
      ++*static_cast<int*>(count);
      sd_event_source_set_time_relative(source, 1000);
      return sd_event_source_set_enabled(source, SD_EVENT_ONESHOT);
    }
  };
  sd_event_source* timer = nullptr;
  ASSERT_GE(sd_event_add_time_relative(fLoop.get(), &timer, CLOCK_MONOTONIC, 1000, 1, Tick::fire, &ticks), 0);
  const EventSourceHandle ticking(timer);
  EXPECT_TRUE(watched({.arguments = {"hanging"}}, 100ms));
  EXPECT_GT(ticks, 10);
  EXPECT_EQ(fStarter.running(), 1U);
  EXPECT_TRUE(runUntil([this] { return !testing::namesIn(fFolder / "pids").empty(); }));
  endHangingPrograms();
  EXPECT_TRUE(noneIsLeft());
}

TEST_F(ProgramStarterTest, ProgramsGoOnWhenTheStarterEnds) {
  addHangingProgram("hanging");
  {
    ProgramStarter starter(fLoop.get(), journal());
    bool told = false;
    ASSERT_TRUE(starter.start({.arguments = {"hanging"}}, [&told](const Status&) { told = true; }));
    ASSERT_TRUE(runUntil([this] { return !testing::namesIn(fFolder / "pids").empty(); }));
    EXPECT_FALSE(told);
  }
  const pid_t pid = std::stoi(*testing::namesIn(fFolder / "pids").begin());
  EXPECT_EQ(waitpid(pid, nullptr, WNOHANG), 0);
  kill(pid, SIGKILL);
  EXPECT_EQ(waitpid(pid, nullptr, 0), pid);
}

}  // namespace
}  // namespace veltrix
