#include "platform/workspace.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <sstream>

#include "tests/support/temporary_folder.h"
#include "util/file_descriptor.h"

namespace veltrix {
namespace {

using ::testing::HasSubstr;

constexpr int kPatienceMilliseconds = 20000;

class Workspace : public ::testing::Test {
 protected:
  Workspace() {
    EXPECT_EQ(mkfifo((fFolder / "answer").c_str(), 0600), 0);
    fAnswer.reset(open((fFolder / "answer").c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
  }

  // An application whose program runs this shell script; "$answer" leads back to the test.
  std::string addApplication(const std::string& name, const std::string& script) {
    const std::string program = fFolder / (name + ".app/" + name);
    testing::writeFile(program, "#!/bin/sh\nanswer='" + (fFolder / "answer") + "'\n" + script);
    chmod(program.c_str(), 0700);
    return fFolder / (name + ".app");
  }

  // What the application has written up to the line "end".
  std::string answer() const {
    std::string text;
    pollfd waiting = {fAnswer.get(), POLLIN, 0};
    while (text.find("end\n") == std::string::npos && poll(&waiting, 1, kPatienceMilliseconds) > 0) {
      std::array<char, 4096> buffer = {};
      const ssize_t count = read(fAnswer.get(), buffer.data(), buffer.size());
      text.append(buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return text;
  }

  testing::TemporaryFolder fFolder;
  FileDescriptor fAnswer;
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

TEST_F(Workspace, ProgramOfTheApplicationRunsWithoutInput) {
  const std::string application = addApplication("Some Thing", R"sh(
    { echo "program: $0"; echo "input: $(readlink /proc/$$/fd/0)"; echo "end"; } > "$answer"
  )sh");
  ASSERT_TRUE(launchApplication(application).ok());
  const std::string said = answer();
  EXPECT_EQ(field(said, "program"), application + "/Some Thing");
  EXPECT_EQ(field(said, "input"), "/dev/null");
}

TEST_F(Workspace, ProgramRunsInASessionOfItsOwn) {
  const std::string application = addApplication("Thing", R"sh(
    read -r pid name state parent group session rest < /proc/$$/stat
    { echo "group: $group"; echo "session: $session"; echo "end"; } > "$answer"
  )sh");
  ASSERT_TRUE(launchApplication(application).ok());
  const std::string said = answer();
  EXPECT_NE(field(said, "session"), "(none)");
  EXPECT_NE(field(said, "session"), std::to_string(getsid(0)));
  EXPECT_NE(field(said, "group"), std::to_string(getpgrp()));
}

TEST_F(Workspace, NoChildOfOursIsLeft) {
  ASSERT_TRUE(launchApplication(addApplication("Thing", "echo end > \"$answer\"\n")).ok());
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
  EXPECT_THAT(answer(), HasSubstr("end"));
}

TEST_F(Workspace, SignalsAreTheStandardOnes) {
  sigset_t blocked;
  sigset_t old;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR1);
  sigprocmask(SIG_BLOCK, &blocked, &old);
  const auto handler = signal(SIGUSR2, SIG_IGN);
  const bool launched =
      launchApplication(
          addApplication("Thing", "{ grep -E '^Sig(Blk|Ign)' /proc/self/status; echo end; } > \"$answer\"\n"))
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

TEST_F(Workspace, OnlyTheStandardDescriptorsAreHandedOn) {
  const FileDescriptor inherited(open("/dev/null", O_RDONLY));  // lives on through an exec by itself
  ASSERT_GE(inherited.get(), 3);
  const std::string application =
      addApplication("Thing", "{ readlink /proc/$$/fd/" + std::to_string(inherited.get()) +
                                  " || echo closed; echo end; } > \"$answer\"\n");
  ASSERT_TRUE(launchApplication(application).ok());
  EXPECT_THAT(answer(), HasSubstr("closed"));
}

TEST_F(Workspace, MissingProgramIsReportedWithItsPath) {
  const Status status = launchApplication(fFolder / "Missing.app");
  ASSERT_FALSE(status.ok());
  EXPECT_EQ(status.error().code, ENOENT);
  EXPECT_THAT(status.error().message, HasSubstr("Missing.app/Missing"));
}

TEST_F(Workspace, ProgramThatCannotBeExecutedIsReported) {
  const std::string application = addApplication("Thing", "");
  chmod((application + "/Thing").c_str(), 0600);
  EXPECT_EQ(launchApplication(application).error().code, EACCES);
  testing::writeFile(fFolder / "Bytes.app/Bytes", "no program");
  chmod((fFolder / "Bytes.app/Bytes").c_str(), 0700);
  EXPECT_EQ(launchApplication(fFolder / "Bytes.app").error().code, ENOEXEC);
}

TEST_F(Workspace, EmptyPathIsReported) {
  EXPECT_FALSE(launchApplication("").ok());
  EXPECT_FALSE(launchApplication("/").ok());
}

TEST_F(Workspace, FinalSlashChangesNothing) {
  const std::string application = addApplication("Thing", "echo end > \"$answer\"\n");
  ASSERT_TRUE(launchApplication(application + "/").ok());
  EXPECT_THAT(answer(), HasSubstr("end"));
}

TEST_F(Workspace, FailuresAndStartsLeaveNoDescriptorBehind) {
  const std::string application = addApplication("Thing", "echo end > \"$answer\"\n");
  const std::size_t before = testing::namesIn("/proc/self/fd").size();
  ASSERT_TRUE(launchApplication(application).ok());
  EXPECT_FALSE(launchApplication("/nonexistent/Thing.app").ok());
  EXPECT_EQ(testing::namesIn("/proc/self/fd").size(), before);
  EXPECT_THAT(answer(), HasSubstr("end"));
}

}  // namespace
}  // namespace veltrix
