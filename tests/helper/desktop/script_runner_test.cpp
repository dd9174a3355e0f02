#include "helper/desktop/script_runner.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

#include "tests/helper/desktop/desktop_fixture.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class ScriptRunnerTest : public testing::DesktopFixture {
 protected:
  ScriptRunnerTest() : fPath("PATH", "/usr/bin:/bin") {}

  // Runs it to its end; the reason why it was not started or did not end well.
  std::string run(const std::string& script) {
    fReasons.clear();
    const Status started = fScripts->run(script);
    if (!started) {
      return started.error().message;
    }
    EXPECT_TRUE(runUntil([this] { return fStarter.running() == 0; }));
    return fReasons.empty() ? "" : fReasons.front();
  }

  testing::ScopedEnvironment fPath;
  std::vector<std::string> fReasons;
  ProgramStarter fStarter{fLoop.get(), journal()};
  std::unique_ptr<ScriptRunner> fScripts = std::make_unique<ScriptRunner>(
      fStarter, [this](const Error& error) { fReasons.push_back(error.message); });
};

TEST_F(ScriptRunnerTest, TextGoesToTheShellInTheHomeFolder) {
  EXPECT_EQ(run("pwd; readlink /proc/$$/fd/0\necho 'a  b' >&2"), "");
  EXPECT_EQ(journalText(), home() + "\n/dev/null\na  b\n");
  EXPECT_THAT(fIdentifiers, ElementsAre("veltrix-script"));
}

TEST_F(ScriptRunnerTest, TextGoesToTheInterpreterOfItsFirstLine) {
  EXPECT_EQ(run("#!/usr/bin/env python3\nimport sys\nprint(len(sys.argv), 7 * 6)\n"), "");
  EXPECT_EQ(journalText(), "1 42\n");
}

TEST_F(ScriptRunnerTest, InterpreterGetsOneArgumentAndTheFile) {
  writeScript("interpreter", "printf '<%s>' \"$#\" \"$1\"; tail -n 1 \"$2\"\n");
  EXPECT_EQ(run("#!" + (fFolder / "interpreter") + " -x  $(reboot) 'y\nlast"), "");
  EXPECT_EQ(journalText(), "<2><-x  $(reboot) 'y>last");
}

TEST_F(ScriptRunnerTest, TextIsInNoListOfProcesses) {
  EXPECT_EQ(run("secret=nobody; tr '\\0' ' ' < /proc/$$/cmdline\n"), "");
  EXPECT_THAT(journalText(), StartsWith("/bin/sh " + (fFolder / "runtime/")));
}

TEST_F(ScriptRunnerTest, FileIsTheUsersAloneAndGoesWithTheScript) {
  EXPECT_EQ(run("stat -c %a \"$0\"\n"), "");
  EXPECT_EQ(journalText(), "600\n");
  EXPECT_THAT(testing::namesIn(fFolder / "runtime"), IsEmpty());
}

TEST_F(ScriptRunnerTest, InterpreterThatResolvesTheNameFirstFindsTheFile) {
  writeScript("interpreter", "cat \"$(realpath \"$1\")\" | tail -n 1\n");
  EXPECT_EQ(run("#!" + (fFolder / "interpreter") + "\nlast"), "");
  EXPECT_EQ(journalText(), "last");
}

TEST_F(ScriptRunnerTest, WithoutAFolderForTheSessionTheFileHasNoName) {
  for (const char* folder : {"", "relative", "/no/such/folder"}) {
    const testing::ScopedEnvironment runtime("XDG_RUNTIME_DIR", folder);
    EXPECT_EQ(run("echo \"$0\"; head -c 5 /proc/self/fd/3\n"), "");
  }
  EXPECT_THAT(journalText(), StartsWith("/proc/self/fd/3\necho "));
}

TEST_F(ScriptRunnerTest, ScriptThatFailsIsReported) {
  EXPECT_EQ(run("exit 3"), "the script ended with exit status 3");
  EXPECT_EQ(run("kill -TERM $$"), "the script ended with signal SIGTERM");
  EXPECT_EQ(run("#!/no/such/interpreter\n"), "cannot start /no/such/interpreter: No such file or directory");
  EXPECT_THAT(run("#!python3\n"), HasSubstr("no absolute path"));
  EXPECT_EQ(run(""), "the script is empty");
  EXPECT_EQ(run(" \r\n"), "the script is empty");
  EXPECT_THAT(testing::namesIn(fFolder / "runtime"), IsEmpty());
}

TEST_F(ScriptRunnerTest, NinthAtOnceIsRefused) {
  const std::string waiting = "while [ ! -e \"$HOME/go\" ]; do sleep 0.02; done\n";
  for (std::size_t count = 0; count < kMostScripts; ++count) {
    ASSERT_TRUE(fScripts->run(waiting));
  }
  EXPECT_EQ(reasonOf(fScripts->run("echo")), "8 scripts are running already");
  testing::writeFile(home() + "/go", "");
  ASSERT_TRUE(runUntil([this] { return fStarter.running() == 0; }));
  EXPECT_EQ(run("echo again"), "");
  EXPECT_EQ(journalText(), "again\n");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(ScriptRunnerTest, ScriptsThatCannotBeStartedDoNotCount) {
  for (std::size_t count = 0; count <= kMostScripts; ++count) {
    EXPECT_FALSE(fScripts->run("#!/no/such/interpreter\n"));
  }
  EXPECT_EQ(run("echo"), "");
}

TEST_F(ScriptRunnerTest, ScriptsGoOnWhenTheRunnerEndsAndLeaveNoFile) {
  ASSERT_TRUE(fScripts->run("echo begun; while [ ! -e \"$HOME/go\" ]; do sleep 0.02; done; echo done\n"));
  ASSERT_TRUE(runUntil([this] { return journalText() == "begun\n"; }));
  fScripts.reset();
  EXPECT_THAT(testing::namesIn(fFolder / "runtime"), IsEmpty());
  testing::writeFile(home() + "/go", "");
  ASSERT_TRUE(runUntil([this] { return fStarter.running() == 0; }));
  EXPECT_EQ(journalText(), "begun\ndone\n");
  EXPECT_THAT(fReasons, IsEmpty());
}

TEST_F(ScriptRunnerTest, ScriptLeadsAGroupOfItsOwn) {
  EXPECT_EQ(run("read -r pid name state parent group rest < /proc/$$/stat\n[ \"$group\" = $$ ]\n"), "");
}

}  // namespace
}  // namespace veltrix
