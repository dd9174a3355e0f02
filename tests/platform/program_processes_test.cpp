#include "platform/program_processes.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "tests/support/stubborn_process.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using namespace std::chrono_literals;
using testing::ChildProcess;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class ProgramProcesses : public ::testing::Test {
 protected:
  ProgramProcesses() { std::filesystem::copy_file("/bin/sleep", fProgram); }

  // A child is this program until it has become its own.
  static void waitFor(const std::string& program, std::size_t count) {
    EXPECT_TRUE(testing::waitUntil([&] { return processesOfProgram(program).size() == count; })) << program;
  }

  testing::TemporaryFolder fFolder;
  std::string fProgram = fFolder / "program";
};

TEST_F(ProgramProcesses, AreFoundByTheFileThatTheyRun) {
  EXPECT_THAT(processesOfProgram(fProgram), IsEmpty());
  const ChildProcess one({fProgram, "1000"});
  const ChildProcess other({fProgram, "1000"});
  const ChildProcess namesake({"/bin/sleep", "1000"});
  waitFor(fProgram, 2);
  const auto found = processesOfProgram(fProgram);
  ASSERT_THAT(found, SizeIs(2));
  EXPECT_EQ(found[0].pid + found[1].pid, static_cast<std::uint32_t>(one.pid() + other.pid()));
  EXPECT_TRUE(processRuns(found[0]));
}

TEST_F(ProgramProcesses, AreFoundThroughALink) {
  std::filesystem::create_directory_symlink(fFolder.path(), fFolder / "link");
  const ChildProcess process({fProgram, "1000"});
  waitFor(fFolder / "link/program", 1);
}

TEST_F(ProgramProcesses, AreFoundWhenTheFileHasBeenReplaced) {
  const ChildProcess process({fProgram, "1000"});
  waitFor(fProgram, 1);
  std::filesystem::remove(fProgram);
  EXPECT_THAT(processesOfProgram(fProgram), SizeIs(1));
  std::filesystem::copy_file("/bin/sleep", fProgram);
  EXPECT_THAT(processesOfProgram(fProgram), SizeIs(1));
}

TEST_F(ProgramProcesses, NoProgramHasNone) {
  EXPECT_THAT(processesOfProgram(""), IsEmpty());
  EXPECT_THAT(processesOfProgram(fFolder / "missing"), IsEmpty());
}

TEST_F(ProgramProcesses, EndWhenAsked) {
  ChildProcess process({fProgram, "1000"});
  waitFor(fProgram, 1);
  ASSERT_TRUE(endProcess(processesOfProgram(fProgram)[0], 20s).ok());
  EXPECT_EQ(process.waitForExit(20s), 128 + SIGTERM);
  EXPECT_THAT(processesOfProgram(fProgram), IsEmpty());
}

TEST_F(ProgramProcesses, OneThatDoesNotEndIsReported) {
  const auto process = testing::startStubbornProcess(fProgram, fFolder.path());
  const auto found = processesOfProgram(fProgram);
  ASSERT_THAT(found, SizeIs(1));
  EXPECT_EQ(endProcess(found[0], 50ms).error().code, ETIMEDOUT);
  EXPECT_TRUE(processRuns(found[0]));
}

TEST_F(ProgramProcesses, AnotherProcessWithThePidIsLeftAlone) {
  ChildProcess process({fProgram, "1000"});
  waitFor(fProgram, 1);
  ProcessSerialNumber earlier = processesOfProgram(fProgram)[0];
  --earlier.startTime;
  EXPECT_TRUE(endProcess(earlier, 20s).ok());
  EXPECT_EQ(process.waitForExit(50ms), std::nullopt);
}

TEST_F(ProgramProcesses, OneThatHasEndedNeedsNoEnd) {
  ChildProcess process({fProgram, "0"});
  const auto pid = static_cast<std::uint32_t>(process.pid());
  EXPECT_EQ(process.waitForExit(20s), 0);
  EXPECT_TRUE(endProcess({1, pid}, 20s).ok());
}

}  // namespace
}  // namespace veltrix
