#include "helper/jump/jump_program.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>

#include <sys/stat.h>
#include <sys/syscall.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using Clock = std::chrono::steady_clock;

// What a script writes to the socket: the two kinds of messages.
constexpr const char* kSayReady = R"(printf '\001\0\0\0\0\0\0\0' >&3)";
constexpr const char* kSayMoved = R"(printf '\002\0\0\0\001\0\0\0' >&3)";

class JumpProgramTest : public ::testing::Test {
 protected:
  std::string script(const std::string& lines) {
    const std::string path = fFolder / "program";
    std::ofstream(path) << "#!/bin/sh\necho $$ >>" << (fFolder / "starts") << "\n" << lines << "\n";
    chmod(path.c_str(), 0700);
    return path;
  }
  // The process ids of all starts, a line each.
  std::vector<pid_t> starts() const {
    std::ifstream file(fFolder / "starts");
    return {std::istream_iterator<pid_t>(file), {}};
  }
  JumpProgram& make(const std::string& path) {
    fProgram = std::make_unique<JumpProgram>(
        fLoop.get(), path, [this](const JumpReport& report) { fReports.push_back(report); });
    return *fProgram;
  }
  // Runs the loop until the condition holds.
  bool runUntil(const std::function<bool()>& condition) {
    const auto end = Clock::now() + std::chrono::seconds(20);
    while (!condition() && Clock::now() < end) sd_event_run(fLoop.get(), 10'000);
    return condition();
  }
  bool runUntilState(JumpState state) {
    return runUntil([&] { return fProgram->report().state == state; });
  }
  static bool isGone(pid_t pid) { return kill(pid, 0) != 0; }

  testing::TemporaryFolder fFolder;
  EventLoopHandle fLoop = makeEventLoop();
  std::vector<JumpReport> fReports;
  std::unique_ptr<JumpProgram> fProgram;
};

TEST_F(JumpProgramTest, NothingRunsUntilItIsWanted) {
  JumpProgram& program = make(script("read x <&3"));
  program.setWanted(false);
  EXPECT_EQ(program.report(), JumpReport());
  EXPECT_TRUE(fReports.empty());
  EXPECT_TRUE(starts().empty());
}

TEST_F(JumpProgramTest, ListensOnceTheProgramSaysSo) {
  make(script(std::string(kSayReady) + "\nread x <&3")).setWanted(true);
  EXPECT_EQ(fProgram->report().state, JumpState::kStarting);
  EXPECT_TRUE(runUntilState(JumpState::kListening));
}

TEST_F(JumpProgramTest, TellsOfEachDialog) {
  make(script(std::string(kSayReady) + "\n" + kSayMoved + "\n" + kSayMoved + "\nread x <&3")).setWanted(true);
  EXPECT_TRUE(runUntil([&] { return fProgram->report().dialogs == 2; }));
  EXPECT_STREQ(jumpOutcomeText(fProgram->report().outcome), "moved");
}

TEST_F(JumpProgramTest, EndsWhenItIsNoLongerWanted) {
  make(script(std::string(kSayReady) + "\ntrap '' TERM\nread x <&3\nexec sleep 1000")).setWanted(true);
  ASSERT_TRUE(runUntilState(JumpState::kListening));
  fProgram->setWanted(false);
  EXPECT_EQ(fProgram->report().state, JumpState::kOff);
  EXPECT_TRUE(runUntil([&] { return isGone(starts().at(0)); }));
}

TEST_F(JumpProgramTest, IsStartedAnewWhenItIsWantedAgainBeforeItHasEnded) {
  make(script(std::string(kSayReady) + "\nread x <&3")).setWanted(true);
  ASSERT_TRUE(runUntilState(JumpState::kListening));
  fProgram->setWanted(false);
  fProgram->setWanted(true);
  ASSERT_TRUE(runUntilState(JumpState::kListening));
  EXPECT_EQ(starts().size(), 2U);
  EXPECT_TRUE(isGone(starts().at(0)));
}

TEST_F(JumpProgramTest, OneThatEndsByItselfIsStartedAgainAfterAWhile) {
  make(script("exit 1")).setWanted(true);
  const auto begin = Clock::now();
  ASSERT_TRUE(runUntilState(JumpState::kFailed));
  ASSERT_TRUE(runUntil([&] { return starts().size() == 3; }));
  EXPECT_GE(Clock::now() - begin, 3 * kShortestReconnectDelay);  // once, and twice as long
}

TEST_F(JumpProgramTest, OneThatIsKilledIsStartedAgain) {
  make(script(std::string(kSayReady) + "\nread x <&3")).setWanted(true);
  ASSERT_TRUE(runUntilState(JumpState::kListening));
  ::kill(starts().at(0), SIGKILL);
  ASSERT_TRUE(runUntilState(JumpState::kFailed));
  ASSERT_TRUE(runUntilState(JumpState::kListening));
  EXPECT_EQ(starts().size(), 2U);
}

TEST_F(JumpProgramTest, ProgramThatIsMissingIsAFailureAndNoMore) {
  make(fFolder / "missing").setWanted(true);
  EXPECT_EQ(fProgram->report().state, JumpState::kFailed);
  script(std::string(kSayReady) + "\nread x <&3");
  std::filesystem::rename(fFolder / "program", fFolder / "missing");
  EXPECT_TRUE(runUntilState(JumpState::kListening));
}

TEST_F(JumpProgramTest, NoLongerWantedBetweenTwoStartsMeansNoStart) {
  make(script("exit 1")).setWanted(true);
  ASSERT_TRUE(runUntilState(JumpState::kFailed));
  fProgram->setWanted(false);
  EXPECT_EQ(fProgram->report().state, JumpState::kOff);
  const auto end = Clock::now() + 2 * kShortestReconnectDelay;
  runUntil([&] { return Clock::now() > end; });
  EXPECT_EQ(starts().size(), 1U);
}

TEST_F(JumpProgramTest, EndsWithTheObject) {
  make(script(std::string(kSayReady) + "\nread x <&3\nexec sleep 1000")).setWanted(true);
  ASSERT_TRUE(runUntilState(JumpState::kListening));
  const FileDescriptor process(static_cast<int>(syscall(SYS_pidfd_open, starts().at(0), 0)));
  fProgram.reset();
  pollfd ending{process.get(), POLLIN, 0};
  EXPECT_EQ(poll(&ending, 1, 10'000), 1);
}

TEST_F(JumpProgramTest, GarbageIsPassedOver) {
  make(script(std::string("printf abc >&3\nprintf '\\011\\0\\0\\0\\0\\0\\0\\0' >&3\n") + kSayReady +
              "\nread x <&3"))
      .setWanted(true);
  EXPECT_TRUE(runUntilState(JumpState::kListening));
  EXPECT_EQ(fProgram->report().dialogs, 0U);
}

TEST(JumpOutcomeText, IsKnownForEveryOutcomeAndEmptyForOthers) {
  EXPECT_STREQ(jumpOutcomeText(0), "");
  EXPECT_STREQ(jumpOutcomeText(static_cast<std::uint32_t>(JumpOutcome::kInsideAlready)), "already-there");
  EXPECT_STREQ(jumpOutcomeText(static_cast<std::uint32_t>(JumpOutcome::kButtonHeld)), "button-held");
  EXPECT_STREQ(jumpOutcomeText(static_cast<std::uint32_t>(JumpOutcome::kNoButton)), "no-button");
  EXPECT_STREQ(jumpOutcomeText(static_cast<std::uint32_t>(JumpOutcome::kOutOfWindow)), "out-of-window");
  EXPECT_STREQ(jumpOutcomeText(99), "");
}

}  // namespace
}  // namespace veltrix
