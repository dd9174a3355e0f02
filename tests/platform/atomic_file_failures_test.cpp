#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/file_calls.h"
#include "tests/platform/atomic_file_fixture.h"
#include "tests/support/file_failures.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using testing::namesIn;
using testing::readFile;
using testing::ScopedFileCalls;
using testing::ScopedFileSizeLimit;
using testing::ScopedOrdinaryUser;
using testing::writeFile;

// Paths that cannot be written, and calls of the system that fail in the middle.
using AtomicFileFailures = testing::AtomicFile;

TEST_F(AtomicFileFailures, LinkThatLeadsInACircleIsAnError) {
  ASSERT_EQ(symlink("second", fFile.c_str()), 0);
  ASSERT_EQ(symlink("file", (fFolder / "second").c_str()), 0);
  const Status status = writeFileAtomically(fFile, "new");
  ASSERT_FALSE(status.ok());
  EXPECT_EQ(status.error().code, ELOOP);
  EXPECT_THAT(namesIn(fFolder.path()), ElementsAre("file", "second"));
}

TEST_F(AtomicFileFailures, FolderOrPipeAtThePathIsNotReplaced) {
  ASSERT_EQ(mkdir(fFile.c_str(), 0700), 0);
  EXPECT_EQ(writeFileAtomically(fFile, "new").error().code, EISDIR);
  EXPECT_EQ(writeFileAtomically(fFile + "/", "new").error().code, EISDIR);
  ASSERT_EQ(rmdir(fFile.c_str()), 0);
  ASSERT_EQ(mkfifo(fFile.c_str(), 0600), 0);
  EXPECT_EQ(writeFileAtomically(fFile, "new").error().code, EINVAL);
  EXPECT_TRUE(std::filesystem::is_fifo(fFile));
  EXPECT_THAT(namesIn(fFolder.path()), ElementsAre("file"));
}

TEST_F(AtomicFileFailures, EmptyPathIsAnError) {
  EXPECT_EQ(writeFileAtomically("", "new").error().code, ENOENT);
}

TEST_F(AtomicFileFailures, ParentThatIsAFileIsAnError) {
  writeFile(fFile, "old");
  EXPECT_EQ(writeFileAtomically(fFile + "/child", "new").error().code, ENOTDIR);
  EXPECT_EQ(writeFileAtomically(fFile + "/a/child", "new").error().code, ENOTDIR);
  EXPECT_EQ(readFile(fFile), "old");
}

TEST_F(AtomicFileFailures, NameThatIsTooLongIsAnErrorWithoutTrace) {
  EXPECT_EQ(writeFileAtomically(fFolder / std::string(300, 'x'), "new").error().code, ENAMETOOLONG);
  EXPECT_TRUE(namesIn(fFolder.path()).empty());
}

TEST_F(AtomicFileFailures, ReadOnlyFolderKeepsTheOldFile) {
  writeFile(fFile, "old");
  ASSERT_EQ(chmod(fFolder.path().c_str(), 0555), 0);
  {
    const ScopedOrdinaryUser user;
    expectFailureThatKeeps("new", EACCES);
  }
  chmod(fFolder.path().c_str(), 0700);
}

TEST_F(AtomicFileFailures, VanishedHomeThatMayNotBeCreatedIsAnError) {
  ASSERT_EQ(chmod(fFolder.path().c_str(), 0555), 0);
  {
    const ScopedOrdinaryUser user;
    EXPECT_EQ(writeFileAtomically(fFolder / "home/.config/file", "new").error().code, EACCES);
  }
  chmod(fFolder.path().c_str(), 0700);
  EXPECT_TRUE(namesIn(fFolder.path()).empty());
}

TEST_F(AtomicFileFailures, FileSystemWithoutFilesOfOursIsAnError) {
  EXPECT_FALSE(writeFileAtomically("/proc/self/veltrix", "new").ok());
  EXPECT_FALSE(writeFileAtomically("/proc/veltrix/file", "new").ok());
}

TEST_F(AtomicFileFailures, DiskThatFillsUpInTheMiddleKeepsTheOldFile) {
  writeFile(fFile, "old");
  const ScopedFileSizeLimit limit(4096);  // the first 4096 bytes are taken, then it fails
  expectFailureThatKeeps(std::string(10000, 'n'), EFBIG);
}

TEST_F(AtomicFileFailures, FullDiskAtAnyStepKeepsTheOldFileAndTheNextWriteRepairs) {
  writeFile(fFile, "old");
  const auto noSpace = [](auto...) {
    errno = ENOSPC;
    return -1;
  };
  FileCalls create;
  create.create = noSpace;
  FileCalls write;
  write.write = [](int, const void*, std::size_t) -> ssize_t {
    errno = ENOSPC;
    return -1;
  };
  FileCalls sync;
  sync.syncData = noSpace;
  FileCalls rename;
  rename.rename = noSpace;
  for (const FileCalls& calls : {create, write, sync, rename}) {
    const ScopedFileCalls failing(calls);
    expectFailureThatKeeps("new", ENOSPC);
  }
  ASSERT_TRUE(writeFileAtomically(fFile, "new").ok());
  EXPECT_EQ(readFile(fFile), "new");
}

TEST_F(AtomicFileFailures, ShortAndInterruptedWritesAreContinued) {
  FileCalls calls;
  calls.write = [](int file, const void* bytes, std::size_t count) -> ssize_t {
    static int turn = 0;
    if (++turn % 2 == 0) {
      errno = EINTR;
      return -1;
    }
    return ::write(file, bytes, std::min<std::size_t>(count, 3));
  };
  calls.syncData = [](int file) {
    static bool interrupted = false;
    if (!interrupted) {
      interrupted = true;
      errno = EINTR;
      return -1;
    }
    return fdatasync(file);
  };
  const ScopedFileCalls shortWrites(calls);
  ASSERT_TRUE(writeFileAtomically(fFile, "0123456789").ok());
  EXPECT_EQ(readFile(fFile), "0123456789");
}

TEST_F(AtomicFileFailures, WriteThatTakesNothingIsAnErrorInsteadOfALoop) {
  writeFile(fFile, "old");
  FileCalls calls;
  calls.write = [](int, const void*, std::size_t) -> ssize_t { return 0; };
  const ScopedFileCalls stuck(calls);
  expectFailureThatKeeps("new", EIO);
}

TEST_F(AtomicFileFailures, FolderThatCannotBeSyncedIsNoFailureBecauseTheFileIsTheNewOne) {
  writeFile(fFile, "old");
  FileCalls calls;
  calls.syncFolder = [](int) {
    errno = EIO;
    return -1;
  };
  const ScopedFileCalls failing(calls);
  EXPECT_TRUE(writeFileAtomically(fFile, "new").ok());
  EXPECT_EQ(readFile(fFile), "new");
}

}  // namespace
}  // namespace veltrix
