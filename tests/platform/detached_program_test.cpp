#include "platform/detached_program.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <sstream>

#include "tests/support/environment.h"
#include "tests/support/program_answer.h"
#include "util/file_descriptor.h"

namespace veltrix {
namespace {

using ::testing::HasSubstr;

class DetachedProgram : public ::testing::Test {
 protected:
  // A program that runs this shell script; "$answer" leads back to the test.
  std::string addProgram(const std::string& name, const std::string& script) {
    fAnswer.writeProgram(fFolder / name, script);
    return fFolder / name;
  }

  std::string answer() const { return fAnswer.text(); }

  testing::TemporaryFolder fFolder;
  testing::ProgramAnswer fAnswer{fFolder / "answer"};
};

// The value behind "NAME:" in an answer.
std::string field(const std::string& answer, const std::string& name) {
  std::istringstream lines(answer);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind(name + ":", 0) == 0) {
      const std::size_t start = line.find_first_not_of(" \t", name.size() + 1);
      return start == std::string::npos ? "" : line.substr(start);
    }
  }
  return "(none)";
}

TEST_F(DetachedProgram, RunsWithItsArgumentsAndWithoutInput) {
  const std::string program = addProgram("Some Thing", R"sh(
    { echo "program: $0"; echo "input: $(readlink /proc/$$/fd/0)"; echo "count: $#"; echo "second: $2"; echo "end"; } > "$answer"
  )sh");
  ASSERT_TRUE(startDetached({program, "", "$(reboot); 'a b' *"}).ok());
  const std::string said = answer();
  EXPECT_EQ(field(said, "program"), program);
  EXPECT_EQ(field(said, "input"), "/dev/null");
  EXPECT_EQ(field(said, "count"), "2");
  EXPECT_EQ(field(said, "second"), "$(reboot); 'a b' *");
}

TEST_F(DetachedProgram, ProgramRunsInASessionOfItsOwn) {
  const std::string program = addProgram("Thing", R"sh(
    read -r pid name state parent group session rest < /proc/$$/stat
    { echo "group: $group"; echo "session: $session"; echo "end"; } > "$answer"
  )sh");
  ASSERT_TRUE(startDetached({program}).ok());
  const std::string said = answer();
  EXPECT_NE(field(said, "session"), "(none)");
  EXPECT_NE(field(said, "session"), std::to_string(getsid(0)));
  EXPECT_NE(field(said, "group"), std::to_string(getpgrp()));
}

TEST_F(DetachedProgram, NoChildOfOursIsLeft) {
  ASSERT_TRUE(startDetached({addProgram("Thing", "echo end > \"$answer\"\n")}).ok());
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
  EXPECT_THAT(answer(), HasSubstr("end"));
}

TEST_F(DetachedProgram, SignalsAreTheStandardOnes) {
  sigset_t blocked;
  sigset_t old;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR1);
  sigprocmask(SIG_BLOCK, &blocked, &old);
  const auto handler = signal(SIGUSR2, SIG_IGN);
  const bool launched =
      startDetached(
          {addProgram("Thing", "{ grep -E '^Sig(Blk|Ign)' /proc/self/status; echo end; } > \"$answer\"\n")})
          .ok();
  sigset_t after;
  sigprocmask(SIG_SETMASK, &old, &after);
  signal(SIGUSR2, handler);
  ASSERT_TRUE(launched);
  EXPECT_EQ(sigismember(&after, SIGUSR1), 1);  // this process keeps what it had
  EXPECT_EQ(sigismember(&after, SIGTERM), 0);
  const std::string said = answer();
  const auto bits = [&](const char* name) { return std::stoull(field(said, name), nullptr, 16); };
  EXPECT_EQ(bits("SigBlk") & (1ULL << (SIGUSR1 - 1)), 0U) << said;
  EXPECT_EQ(bits("SigIgn") & (1ULL << (SIGUSR2 - 1)), 0U) << said;
}

TEST_F(DetachedProgram, OnlyTheStandardDescriptorsAreHandedOn) {
  const FileDescriptor inherited(open("/dev/null", O_RDONLY));  // lives on through an exec by itself
  ASSERT_GE(inherited.get(), 3);
  const std::string program =
      addProgram("Thing", "{ readlink /proc/$$/fd/" + std::to_string(inherited.get()) +
                              " || echo closed; echo end; } > \"$answer\"\n");
  ASSERT_TRUE(startDetached({program}).ok());
  EXPECT_THAT(answer(), HasSubstr("closed"));
}

TEST_F(DetachedProgram, MissingProgramIsReportedWithItsPath) {
  const Status status = startDetached({fFolder / "Missing"});
  ASSERT_FALSE(status.ok());
  EXPECT_EQ(status.error().code, ENOENT);
  EXPECT_THAT(status.error().message, HasSubstr(fFolder / "Missing"));
}

TEST_F(DetachedProgram, ProgramThatCannotBeExecutedIsReported) {
  const std::string program = addProgram("Thing", "");
  chmod(program.c_str(), 0600);
  EXPECT_EQ(startDetached({program}).error().code, EACCES);
  testing::writeFile(fFolder / "Bytes", "no program");
  chmod((fFolder / "Bytes").c_str(), 0700);
  EXPECT_EQ(startDetached({fFolder / "Bytes"}).error().code, ENOEXEC);
}

TEST_F(DetachedProgram, NoProgramIsReported) {
  EXPECT_FALSE(startDetached({}).ok());
  EXPECT_FALSE(startDetached({""}).ok());
}

TEST_F(DetachedProgram, ProgramsAreFoundInTheirOrderAlongThePath) {
  addProgram("first/opener", "");
  addProgram("second/opener", "");
  addProgram("second/other", "");
  testing::writeFile(fFolder / "first/other", "cannot be executed");
  std::filesystem::create_directories(fFolder / "first/folder");
  const testing::ScopedEnvironment path("PATH",
                                        "relative::" + (fFolder / "first") + ":" + (fFolder / "second"));
  EXPECT_EQ(programInPath("opener"), fFolder / "first/opener");
  EXPECT_EQ(programInPath("other"), fFolder / "second/other");
  EXPECT_EQ(programInPath("folder"), "");
  EXPECT_EQ(programInPath("missing"), "");
}

TEST_F(DetachedProgram, WithoutAPathNothingIsFound) {
  const testing::ScopedEnvironment path("PATH", std::nullopt);
  EXPECT_EQ(programInPath("sh"), "");
}

TEST_F(DetachedProgram, FailuresAndStartsLeaveNoDescriptorBehind) {
  const std::string program = addProgram("Thing", "echo end > \"$answer\"\n");
  const std::size_t before = testing::namesIn("/proc/self/fd").size();
  ASSERT_TRUE(startDetached({program}).ok());
  EXPECT_FALSE(startDetached({"/nonexistent/Thing"}).ok());
  EXPECT_EQ(testing::namesIn("/proc/self/fd").size(), before);
  EXPECT_THAT(answer(), HasSubstr("end"));
}

}  // namespace
}  // namespace veltrix
