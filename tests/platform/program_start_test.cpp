#include "platform/program_start.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using ::testing::HasSubstr;

class ProgramStartTest : public ::testing::Test {
 protected:
  std::string addProgram(const std::string& name, const std::string& script) {
    testing::writeFile(fFolder / name, "#!/bin/sh\n" + script);
    chmod((fFolder / name).c_str(), 0700);
    return fFolder / name;
  }

  // What the program has said once it has ended; its outcome is in fOutcome.
  std::string run(ProgramStart start) {
    const FileDescriptor output(memfd_create("output", MFD_CLOEXEC));
    start.output = output.get();
    if (start.environment.empty()) {
      start.environment = {"PATH=/usr/bin:/bin"};
    }
    const Result<StartedProgram> started = startProgram(start);
    if (!started) {
      ADD_FAILURE() << started.error().message;
      return "";
    }
    waitFor(started.value());
    std::string text(64 * 1024, '\0');
    const ssize_t count = pread(output.get(), text.data(), text.size(), 0);
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
  }

  void waitFor(const StartedProgram& program) {
    constexpr int kPatienceMilliseconds = 20000;
    pollfd waiting = {program.process.get(), POLLIN, 0};
    EXPECT_EQ(poll(&waiting, 1, kPatienceMilliseconds), 1);
    fOutcome = collectProgram(program);
  }

  testing::TemporaryFolder fFolder;
  Status fOutcome = Done();
};

TEST_F(ProgramStartTest, ArgumentsArriveAsTheyAre) {
  const std::string program = addProgram("Some Thing", "printf '<%s>' \"$0\" \"$#\" \"$@\"\n");
  EXPECT_EQ(run({.arguments = {program, "", "$(reboot); 'a b' *\n"}}),
            "<" + program + "><2><><$(reboot); 'a b' *\n>");
  EXPECT_TRUE(fOutcome.ok());
}

TEST_F(ProgramStartTest, ProgramHasTheEnvironmentThatIsGivenAlone) {
  const std::string text = run({.arguments = {"/usr/bin/env"}, .environment = {"ONE=1 2", "TWO="}});
  EXPECT_EQ(text, "ONE=1 2\nTWO=\n");
}

TEST_F(ProgramStartTest, ProgramRunsInItsFolder) {
  EXPECT_EQ(run({.arguments = {"/bin/pwd"}, .folder = fFolder.path()}), fFolder.path() + "\n");
}

TEST_F(ProgramStartTest, FolderThatIsMissingIsReported) {
  const auto started = startProgram({.arguments = {"/bin/pwd"}, .folder = fFolder / "missing"});
  ASSERT_FALSE(started.ok());
  EXPECT_EQ(started.error().code, ENOENT);
}

TEST_F(ProgramStartTest, ProgramLeadsASessionOfItsOwn) {
  const std::string said = run({.arguments = {addProgram("Thing", R"sh(
    read -r pid name state parent group session rest < /proc/$$/stat
    echo "$$ $group $session"
  )sh")}});
  const std::string pid = said.substr(0, said.find(' '));
  EXPECT_EQ(said, pid + " " + pid + " " + pid + "\n");
}

TEST_F(ProgramStartTest, StandardInputIsEmpty) {
  EXPECT_EQ(run({.arguments = {addProgram("Thing", "readlink /proc/$$/fd/0\n")}}), "/dev/null\n");
}

TEST_F(ProgramStartTest, SignalsAreTheStandardOnes) {
  sigset_t blocked;
  sigset_t old;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGUSR1);
  sigprocmask(SIG_BLOCK, &blocked, &old);
  const auto handler = signal(SIGUSR2, SIG_IGN);
  const std::string said = run({.arguments = {"/bin/grep", "-E", "^Sig(Blk|Ign)", "/proc/self/status"}});
  sigset_t after;
  sigprocmask(SIG_SETMASK, &old, &after);
  signal(SIGUSR2, handler);
  EXPECT_EQ(sigismember(&after, SIGUSR1), 1);  // this process keeps what it had
  const auto bits = [&](const std::string& name) {
    return std::stoull(said.substr(said.find(name) + name.size()), nullptr, 16);
  };
  EXPECT_EQ(bits("SigBlk:") & (1ULL << (SIGUSR1 - 1)), 0U) << said;
  EXPECT_EQ(bits("SigIgn:") & (1ULL << (SIGUSR2 - 1)), 0U) << said;
}

TEST_F(ProgramStartTest, NoOtherDescriptorIsHandedOn) {
  const FileDescriptor inherited(open("/dev/null", O_RDONLY));  // lives on through an exec by itself
  ASSERT_GE(inherited.get(), 3);
  // The one of ls itself for the folder is 3.
  EXPECT_EQ(run({.arguments = {"/bin/ls", "/proc/self/fd"}}), "0\n1\n2\n3\n");
}

TEST_F(ProgramStartTest, ExtraDescriptorIsHandedOn) {
  const FileDescriptor extra(memfd_create("extra", MFD_CLOEXEC));
  ASSERT_EQ(write(extra.get(), "hello", 5), 5);
  EXPECT_EQ(run({.arguments = {"/bin/cat", "/proc/self/fd/3"}, .extra = extra.get()}), "hello");
}

TEST_F(ProgramStartTest, DescriptorsDoNotTakeEachOthersPlaces) {
  const FileDescriptor extra(memfd_create("extra", MFD_CLOEXEC));
  const FileDescriptor errors(memfd_create("errors", MFD_CLOEXEC));
  ASSERT_EQ(write(extra.get(), "hello", 5), 5);
  const std::string program = addProgram("Thing", "cat /proc/self/fd/3; echo bad >&2\n");
  EXPECT_EQ(run({.arguments = {program}, .errors = errors.get(), .extra = extra.get()}), "hello");
  EXPECT_EQ(testing::readFile("/proc/self/fd/" + std::to_string(errors.get())), "bad\n");
}

TEST_F(ProgramStartTest, OutcomeSaysHowItEnded) {
  run({.arguments = {addProgram("Failing", "exit 3\n")}});
  ASSERT_FALSE(fOutcome.ok());
  EXPECT_EQ(fOutcome.error().message, "exit status 3");
  run({.arguments = {addProgram("Killed", "kill -KILL $$\n")}});
  ASSERT_FALSE(fOutcome.ok());
  EXPECT_EQ(fOutcome.error().message, "signal SIGKILL");
}

TEST_F(ProgramStartTest, ProgramThatRunsHasNoOutcomeYetAndIsCollectedAtItsEnd) {
  const auto started = startProgram({.arguments = {"/bin/sleep", "1000"}});
  ASSERT_TRUE(started.ok());
  EXPECT_EQ(collectProgram(started.value()).error().code, EAGAIN);
  kill(started.value().pid, SIGTERM);
  waitFor(started.value());
  EXPECT_EQ(fOutcome.error().message, "signal SIGTERM");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(ProgramStartTest, ProgramThatCannotBeExecutedIsReportedAndLeavesNoChild) {
  testing::writeFile(fFolder / "Bytes", "no program");
  EXPECT_EQ(startProgram({.arguments = {fFolder / "Missing"}}).error().code, ENOENT);
  EXPECT_EQ(startProgram({.arguments = {fFolder / "Bytes"}}).error().code, EACCES);
  chmod((fFolder / "Bytes").c_str(), 0700);
  EXPECT_EQ(startProgram({.arguments = {fFolder / "Bytes"}}).error().code, ENOEXEC);
  EXPECT_THAT(startProgram({.arguments = {fFolder / "Missing"}}).error().message,
              HasSubstr(fFolder / "Missing"));
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(ProgramStartTest, NothingIsStartedWithoutAProgramOrWithATextThatWouldBeCut) {
  using namespace std::string_literals;
  EXPECT_FALSE(startProgram({}).ok());
  EXPECT_FALSE(startProgram({.arguments = {""}}).ok());
  EXPECT_EQ(startProgram({.arguments = {"/bin/true", "a\0b"s}}).error().code, EINVAL);
  EXPECT_EQ(startProgram({.arguments = {"/bin/true"}, .environment = {"A=\0b"s}}).error().code, EINVAL);
}

TEST_F(ProgramStartTest, LeavesNoDescriptorBehind) {
  const std::size_t before = testing::namesIn("/proc/self/fd").size();
  run({.arguments = {"/bin/true"}});
  EXPECT_FALSE(startProgram({.arguments = {"/nonexistent/Thing"}}).ok());
  EXPECT_EQ(testing::namesIn("/proc/self/fd").size(), before);
}

}  // namespace
}  // namespace veltrix
