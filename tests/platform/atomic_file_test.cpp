#include "platform/atomic_file.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <thread>

#include "platform/file_calls.h"
#include "tests/platform/atomic_file_fixture.h"
#include "tests/support/file_failures.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using testing::AtomicFile;
using ::testing::ElementsAre;
using testing::namesIn;
using testing::readFile;
using testing::ScopedFileCalls;
using testing::writeFile;

mode_t modeOf(const std::string& path) {
  struct stat attributes = {};
  EXPECT_EQ(stat(path.c_str(), &attributes), 0) << path;
  return attributes.st_mode & 07777U;
}

TEST_F(AtomicFile, NewFileIsForItsUserAlone) {
  const mode_t mask = umask(0);
  ASSERT_TRUE(writeFileAtomically(fFile, "new").ok());
  umask(mask);
  EXPECT_EQ(readFile(fFile), "new");
  EXPECT_EQ(modeOf(fFile), 0600U);
  EXPECT_THAT(namesIn(fFolder.path()), ElementsAre("file"));
}

TEST_F(AtomicFile, ReplacingKeepsTheMode) {
  writeFile(fFile, "old");
  for (const mode_t mode : {0644U, 0400U, 0664U, 0600U}) {
    ASSERT_EQ(chmod(fFile.c_str(), mode), 0);
    ASSERT_TRUE(writeFileAtomically(fFile, std::to_string(mode)).ok());
    EXPECT_EQ(readFile(fFile), std::to_string(mode));
    EXPECT_EQ(modeOf(fFile), mode);
  }
}

TEST_F(AtomicFile, ReplacingKeepsTheOwnerWhenPossible) {
  writeFile(fFile, "old");
  const uid_t owner = geteuid() == 0 ? 65534 : geteuid();
  const gid_t group = geteuid() == 0 ? 65534 : getegid();
  ASSERT_EQ(chown(fFile.c_str(), owner, group), 0);
  ASSERT_TRUE(writeFileAtomically(fFile, "new").ok());
  struct stat attributes = {};
  ASSERT_EQ(stat(fFile.c_str(), &attributes), 0);
  EXPECT_EQ(attributes.st_uid, owner);
  EXPECT_EQ(attributes.st_gid, group);
}

TEST_F(AtomicFile, EmptyAndBinaryContentsAreKept) {
  ASSERT_TRUE(writeFileAtomically(fFile, "").ok());
  EXPECT_EQ(readFile(fFile), "");
  const std::string bytes("a\0b\xFF", 4);
  ASSERT_TRUE(writeFileAtomically(fFile, bytes).ok());
  EXPECT_EQ(readFile(fFile), bytes);
}

TEST_F(AtomicFile, MissingParentsAreCreatedForTheirUserAlone) {
  const std::string path = fFolder / "a/b/c/file";
  ASSERT_TRUE(writeFileAtomically(path, "new").ok());
  EXPECT_EQ(readFile(path), "new");
  for (const char* folder : {"a", "a/b", "a/b/c"}) {
    EXPECT_EQ(modeOf(fFolder / folder), 0700U);
  }
}

TEST_F(AtomicFile, RelativePathIsWrittenInTheWorkingFolder) {
  const std::filesystem::path working = std::filesystem::current_path();
  std::filesystem::current_path(fFolder.path());
  EXPECT_TRUE(writeFileAtomically("file", "plain").ok());
  EXPECT_TRUE(writeFileAtomically("sub/file", "below").ok());
  std::filesystem::current_path(working);
  EXPECT_EQ(readFile(fFile), "plain");
  EXPECT_EQ(readFile(fFolder / "sub/file"), "below");
}

TEST_F(AtomicFile, SymbolicLinkIsFollowedAndStays) {
  writeFile(fFolder / "real/target", "old");
  ASSERT_EQ(symlink((fFolder / "real/target").c_str(), fFile.c_str()), 0);
  ASSERT_TRUE(writeFileAtomically(fFile, "new").ok());
  EXPECT_TRUE(std::filesystem::is_symlink(fFile));
  EXPECT_FALSE(std::filesystem::is_symlink(fFolder / "real/target"));
  EXPECT_EQ(readFile(fFolder / "real/target"), "new");
}

TEST_F(AtomicFile, RelativeLinkLeadsFromItsOwnFolder) {
  writeFile(fFolder / "real/target", "old");
  ASSERT_EQ(symlink("real/second", fFile.c_str()), 0);
  ASSERT_EQ(symlink("target", (fFolder / "real/second").c_str()), 0);
  ASSERT_TRUE(writeFileAtomically(fFile, "new").ok());
  EXPECT_TRUE(std::filesystem::is_symlink(fFile));
  EXPECT_TRUE(std::filesystem::is_symlink(fFolder / "real/second"));
  EXPECT_EQ(readFile(fFolder / "real/target"), "new");
}

TEST_F(AtomicFile, DanglingLinkGetsItsTarget) {
  ASSERT_EQ(symlink("later/target", fFile.c_str()), 0);
  ASSERT_TRUE(writeFileAtomically(fFile, "new").ok());
  EXPECT_TRUE(std::filesystem::is_symlink(fFile));
  EXPECT_EQ(readFile(fFolder / "later/target"), "new");
}

TEST_F(AtomicFile, LongestNameIsWritten) {
  const std::string name(255, 'x');
  ASSERT_TRUE(writeFileAtomically(fFolder / name, "new").ok());
  EXPECT_THAT(namesIn(fFolder.path()), ElementsAre(name));
}

TEST_F(AtomicFile, BytesAreSafeBeforeTheNameChangesAndTheNameAfterwards) {
  static std::string order;
  order.clear();
  FileCalls calls;
  calls.syncData = [](int file) {
    order += "data ";
    return fdatasync(file);
  };
  calls.rename = [](int fromFolder, const char* from, int toFolder, const char* to) {
    order += "rename ";
    return renameat(fromFolder, from, toFolder, to);
  };
  calls.syncFolder = [](int folder) {
    order += "folder";
    return fsync(folder);
  };
  const ScopedFileCalls recorded(calls);
  ASSERT_TRUE(writeFileAtomically(fFile, "new").ok());
  EXPECT_EQ(order, "data rename folder");
}

TEST_F(AtomicFile, TakenTemporaryNameIsNotOpened) {
  static int turn = 0;
  turn = 0;
  FileCalls calls;
  calls.create = [](int folder, const char* name, int flags, mode_t mode) {
    if (++turn == 1) {
      // Somebody else is there first.
      close(openat(folder, name, O_CREAT | O_WRONLY, 0600));
    }
    return openat(folder, name, flags, mode);
  };
  const ScopedFileCalls contested(calls);
  ASSERT_TRUE(writeFileAtomically(fFile, "new").ok());
  EXPECT_EQ(turn, 2);
  EXPECT_EQ(readFile(fFile), "new");
  EXPECT_EQ(namesIn(fFolder.path()).size(), 2U);
}

TEST_F(AtomicFile, ReaderNeverSeesAPartOfAFile) {
  const std::string a(20000, 'a');
  const std::string b(30000, 'b');
  ASSERT_TRUE(writeFileAtomically(fFile, a).ok());
  std::atomic<bool> done = false;
  std::atomic<int> torn = 0;
  std::thread reader([&] {
    while (!done) {
      const std::string seen = readFile(fFile);
      torn += seen != a && seen != b ? 1 : 0;
    }
  });
  for (int i = 0; i < 100; ++i) {
    EXPECT_TRUE(writeFileAtomically(fFile, i % 2 == 0 ? b : a).ok());
  }
  done = true;
  reader.join();
  EXPECT_EQ(torn, 0);
}

TEST_F(AtomicFile, NoDescriptorIsLeftOpen) {
  const std::size_t before = namesIn("/proc/self/fd").size();
  for (int i = 0; i < 10; ++i) {
    ASSERT_TRUE(writeFileAtomically(fFile, "new").ok());
    EXPECT_FALSE(writeFileAtomically(fFile + "/child", "new").ok());
  }
  EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
}

TEST_F(AtomicFile, NewFileNeverReplacesAnything) {
  ASSERT_TRUE(writeNewFileAtomically(fFolder / "new", "new").ok());
  EXPECT_EQ(readFile(fFolder / "new"), "new");
  std::filesystem::remove(fFolder / "new");
  writeFile(fFile, "old");
  EXPECT_EQ(writeNewFileAtomically(fFile, "new").error().code, EEXIST);
  EXPECT_EQ(readFile(fFile), "old");
  ASSERT_EQ(unlink(fFile.c_str()), 0);
  ASSERT_EQ(symlink("nowhere", fFile.c_str()), 0);
  EXPECT_EQ(writeNewFileAtomically(fFile, "new").error().code, EEXIST);
  EXPECT_THAT(namesIn(fFolder.path()), ElementsAre("file"));
  EXPECT_EQ(writeNewFileAtomically("", "new").error().code, ENOENT);
}

TEST_F(AtomicFile, NewFileThatComesTooLateLeavesNoTrace) {
  FileCalls calls;
  calls.renameUnlessTaken = [](int, const char*, int, const char*) {
    errno = EEXIST;
    return -1;
  };
  const ScopedFileCalls late(calls);
  EXPECT_EQ(writeNewFileAtomically(fFile, "new").error().code, EEXIST);
  EXPECT_TRUE(namesIn(fFolder.path()).empty());
}

}  // namespace
}  // namespace veltrix
