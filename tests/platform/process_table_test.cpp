#include "platform/process_table.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <utility>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

struct Walked {
  ProcessSerialNumber psn;
  std::string name;
};

std::vector<Walked> walk(ProcessTable& table) {
  std::vector<Walked> found;
  ProcessSerialNumber psn;
  while (table.nextProcess(&psn) == 0) {
    std::string name;
    EXPECT_EQ(table.processName(psn, &name), 0);
    found.push_back({psn, name});
  }
  EXPECT_EQ(psn, ProcessSerialNumber());
  return found;
}

std::vector<std::pair<std::uint32_t, std::string>> pidsAndNames(ProcessTable& table) {
  std::vector<std::pair<std::uint32_t, std::string>> pairs;
  for (const Walked& each : walk(table)) {
    pairs.emplace_back(each.psn.pid, each.name);
  }
  return pairs;
}

// A folder that looks like /proc.
class FakeProc : public ::testing::Test {
 protected:
  void add(std::uint32_t pid, const std::string& name, const std::string& startTime = "100",
           char state = 'S') {
    const std::string text = std::to_string(pid) + " (" + name + ") " + state +
                             " 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 " + startTime + " 99 98 97\n";
    testing::writeFile(fRoot / (std::to_string(pid) + "/stat"), text);
  }
  void remove(std::uint32_t pid) { std::filesystem::remove_all(fRoot / std::to_string(pid)); }

  testing::TemporaryFolder fRoot;
};

TEST_F(FakeProc, ProcessesComeInRisingOrderOfTheirPid) {
  for (const std::uint32_t pid : {1000U, 9U, 200U, 10U}) {
    add(pid, "p" + std::to_string(pid));
  }
  const auto table = makeProcessTable(fRoot.path());
  EXPECT_THAT(pidsAndNames(*table),
              ElementsAre(Pair(9, "p9"), Pair(10, "p10"), Pair(200, "p200"), Pair(1000, "p1000")));
}

TEST_F(FakeProc, WhatIsNoPidIsPassedOver) {
  add(5, "real");
  for (const char* name : {"self/stat", "5x/stat", "x5/stat", "-5/stat", "0/stat", "99999999999/stat"}) {
    testing::writeFile(fRoot / name, "5 (fake) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20\n");
  }
  const auto table = makeProcessTable(fRoot.path());
  EXPECT_THAT(pidsAndNames(*table), ElementsAre(Pair(5, "real")));
}

TEST_F(FakeProc, NameMayHoldParenthesesBlanksAndLineBreaks) {
  add(1, "a) S 1 (b");
  add(2, "((()");
  add(3, "two\nlines");
  add(4, "");
  add(5, "R 1 2 3) R 4");
  const auto table = makeProcessTable(fRoot.path());
  EXPECT_THAT(pidsAndNames(*table), ElementsAre(Pair(1, "a) S 1 (b"), Pair(2, "((()"), Pair(3, "two\nlines"),
                                                Pair(4, ""), Pair(5, "R 1 2 3) R 4")));
  ProcessSerialNumber psn;
  ASSERT_EQ(table->nextProcess(&psn), 0);
  EXPECT_EQ(psn.startTime, 100U);
}

TEST_F(FakeProc, NameEndsAfterFifteenBytes) {
  add(1, "kworker/0:1H-events_highpri");
  const auto table = makeProcessTable(fRoot.path());
  EXPECT_THAT(pidsAndNames(*table), ElementsAre(Pair(1, "kworker/0:1H-ev")));
}

TEST_F(FakeProc, StartTimeKeepsItsLow32Bits) {
  add(1, "old", "4294967303");  // 2^32 + 7
  const auto table = makeProcessTable(fRoot.path());
  ProcessSerialNumber psn;
  ASSERT_EQ(table->nextProcess(&psn), 0);
  EXPECT_EQ(psn, (ProcessSerialNumber{7, 1}));
}

TEST_F(FakeProc, DamagedFilesArePassedOver) {
  for (const char* text : {"", "1", "1 (a", "1 a) S", ")(", "1 (a)", "1 (a) ", "1 (a) S 1 2 3",
                           "1 (a) S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 x 2"}) {
    testing::writeFile(fRoot / "1/stat", text);
    const auto table = makeProcessTable(fRoot.path());
    EXPECT_THAT(walk(*table), IsEmpty()) << text;
  }
}

TEST_F(FakeProc, ProcessOfAnotherUserIsNotListed) {
  add(1, "theirs");
  EXPECT_THAT(walk(*makeProcessTable(fRoot.path(), geteuid() + 1)), IsEmpty());
  EXPECT_EQ(walk(*makeProcessTable(fRoot.path(), geteuid())).size(), 1U);
}

TEST_F(FakeProc, EndedProcessThatIsNotCollectedYetDoesNotRun) {
  add(1, "zombie", "100", 'Z');
  add(2, "dead", "100", 'X');
  add(3, "alive", "100", 'R');
  const auto table = makeProcessTable(fRoot.path());
  EXPECT_THAT(pidsAndNames(*table), ElementsAre(Pair(3, "alive")));
}

TEST_F(FakeProc, ProcessThatEndsDuringTheWalkIsPassedOver) {
  add(1, "first");
  add(2, "second");
  add(3, "third");
  const auto table = makeProcessTable(fRoot.path());
  ProcessSerialNumber psn;
  ASSERT_EQ(table->nextProcess(&psn), 0);
  remove(1);
  remove(2);
  std::string name;
  EXPECT_EQ(table->processName(psn, &name), 0);  // it ran when the walk reached it
  EXPECT_EQ(name, "first");
  ASSERT_EQ(table->nextProcess(&psn), 0);
  EXPECT_EQ(psn.pid, 3U);
}

TEST_F(FakeProc, WalkContinuesAfterAProcessThatIsNotInTheTable) {
  add(1, "first");
  add(5, "fifth");
  const auto table = makeProcessTable(fRoot.path());
  walk(*table);
  ProcessSerialNumber psn = {100, 3};
  ASSERT_EQ(table->nextProcess(&psn), 0);
  EXPECT_EQ(psn.pid, 5U);
}

TEST_F(FakeProc, EveryWalkTakesANewLook) {
  const auto table = makeProcessTable(fRoot.path());
  EXPECT_THAT(walk(*table), IsEmpty());
  add(7, "new");
  EXPECT_THAT(pidsAndNames(*table), ElementsAre(Pair(7, "new")));
  remove(7);
  EXPECT_THAT(walk(*table), IsEmpty());
}

TEST_F(FakeProc, PidThatIsUsedAgainIsAnotherProcess) {
  add(1, "first", "100");
  add(2, "second", "100");
  const auto table = makeProcessTable(fRoot.path());
  ProcessSerialNumber first;
  ASSERT_EQ(table->nextProcess(&first), 0);
  ProcessSerialNumber second = first;
  ASSERT_EQ(table->nextProcess(&second), 0);
  std::string name;
  EXPECT_EQ(table->processName(first, &name), 0);
  EXPECT_EQ(name, "first");
  add(1, "other", "200");
  EXPECT_EQ(table->processName(first, &name), kProcessNotFound);
  remove(1);
  EXPECT_EQ(table->processName(first, &name), kProcessNotFound);
}

TEST_F(FakeProc, NoProcessHasNoName) {
  std::string name = "kept";
  EXPECT_EQ(makeProcessTable(fRoot.path())->processName({}, &name), kProcessNotFound);
  EXPECT_EQ(name, "kept");
}

TEST(ProcessTable, MissingFolderListsNothing) {
  const auto table = makeProcessTable("/nonexistent/proc");
  std::string name;
  EXPECT_THAT(walk(*table), IsEmpty());
  EXPECT_EQ(table->processName({1, 1}, &name), kProcessNotFound);
}

// A child that waits under a name of its own until it is killed.
class Child {
 public:
  explicit Child(const char* name) {
    std::array<int, 2> ready = {};
    EXPECT_EQ(pipe(ready.data()), 0);
    fPid = fork();
    if (fPid == 0) {
      prctl(PR_SET_NAME, name);
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      [[maybe_unused]] const ssize_t written = write(ready[1], "x", 1);
      for (;;) {
        pause();
      }
    }
    char byte = 0;
    EXPECT_EQ(read(ready[0], &byte, 1), 1);
    close(ready[0]);
    close(ready[1]);
  }
  ~Child() { collect(); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  std::uint32_t pid() const { return static_cast<std::uint32_t>(fPid); }
  // Ends it and leaves it uncollected.
  void kill() const {
    ::kill(fPid, SIGKILL);
    siginfo_t info = {};
    waitid(P_PID, pid(), &info, WEXITED | WNOWAIT);
  }
  void collect() {
    if (fPid > 0) {
      ::kill(fPid, SIGKILL);
      waitpid(fPid, nullptr, 0);
      fPid = 0;
    }
  }

 private:
  pid_t fPid = 0;
};

TEST(ProcessTable, RunningChildIsFoundWithItsNameUntilItEnds) {
  Child child("VeltrixHelper");
  const auto table = makeProcessTable();
  const std::vector<Walked> found = walk(*table);
  const auto isChild = [&](const Walked& each) { return each.psn.pid == child.pid(); };
  const auto it = std::find_if(found.begin(), found.end(), isChild);
  ASSERT_NE(it, found.end());
  EXPECT_EQ(it->name, "VeltrixHelper");
  EXPECT_TRUE(processRuns(it->psn));
  EXPECT_FALSE(processRuns({it->psn.startTime + 1, it->psn.pid}));
  EXPECT_TRUE(std::is_sorted(found.begin(), found.end(),
                             [](const Walked& a, const Walked& b) { return a.psn.pid < b.psn.pid; }));
  child.kill();
  EXPECT_FALSE(processRuns(it->psn));
  const std::vector<Walked> later = walk(*table);
  EXPECT_TRUE(std::none_of(later.begin(), later.end(), isChild));
  child.collect();
  EXPECT_FALSE(processRuns(it->psn));
}

TEST(ProcessTable, ThisProcessIsInTheList) {
  const ProcessSerialNumber self = currentProcess();
  EXPECT_EQ(self.pid, static_cast<std::uint32_t>(getpid()));
  EXPECT_TRUE(processRuns(self));
  const std::vector<Walked> found = walk(*makeProcessTable());
  EXPECT_TRUE(std::any_of(found.begin(), found.end(), [&](const Walked& each) { return each.psn == self; }));
}

TEST(ProcessTable, NoProcessDoesNotRun) {
  EXPECT_FALSE(processRuns({}));
}

TEST(ProcessTable, WalksLeaveNoDescriptorBehind) {
  const auto table = makeProcessTable();
  walk(*table);
  const std::size_t before = testing::namesIn("/proc/self/fd").size();
  for (int i = 0; i < 10; ++i) {
    walk(*table);
  }
  EXPECT_EQ(testing::namesIn("/proc/self/fd").size(), before);
}

}  // namespace
}  // namespace veltrix
