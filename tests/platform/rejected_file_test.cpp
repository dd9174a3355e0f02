#include "platform/atomic_file.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

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
using testing::writeFile;

class RejectedFile : public testing::AtomicFile {};

TEST_F(RejectedFile, IsKeptUnderAFreeName) {
  for (const char* name : {"file.rejected", "file.rejected.2", "file.rejected.3"}) {
    writeFile(fFile, name);
    const Result<std::string> kept = keepRejectedFile(fFile);
    ASSERT_TRUE(kept.ok());
    EXPECT_EQ(kept.value(), fFolder / name);
    EXPECT_EQ(readFile(kept.value()), name);
  }
  EXPECT_THAT(namesIn(fFolder.path()), ElementsAre("file.rejected", "file.rejected.2", "file.rejected.3"));
}

TEST_F(RejectedFile, NeverReplacesAFileWhereRenamingCannotPromiseIt) {
  FileCalls calls;
  calls.renameUnlessTaken = [](int, const char*, int, const char*) {
    errno = EINVAL;
    return -1;
  };
  const ScopedFileCalls oldFileSystem(calls);
  writeFile(fFolder / "file.rejected", "earlier");
  writeFile(fFile, "old");
  const Result<std::string> kept = keepRejectedFile(fFile);
  ASSERT_TRUE(kept.ok());
  EXPECT_EQ(readFile(fFolder / "file.rejected"), "earlier");
  EXPECT_EQ(readFile(fFolder / "file.rejected.2"), "old");
  EXPECT_THAT(namesIn(fFolder.path()), ElementsAre("file.rejected", "file.rejected.2"));
}

TEST_F(RejectedFile, MissingFileIsAnErrorWithoutTrace) {
  EXPECT_EQ(keepRejectedFile(fFile).error().code, ENOENT);
  EXPECT_EQ(keepRejectedFile(fFolder / "no/folder").error().code, ENOENT);
  FileCalls calls;
  calls.renameUnlessTaken = [](int, const char*, int, const char*) {
    errno = ENOSYS;
    return -1;
  };
  const ScopedFileCalls oldKernel(calls);
  EXPECT_EQ(keepRejectedFile(fFile).error().code, ENOENT);
  EXPECT_TRUE(namesIn(fFolder.path()).empty());
}

TEST_F(RejectedFile, LinkStaysAndItsTargetIsMoved) {
  writeFile(fFolder / "real/target", "old");
  ASSERT_EQ(symlink("real/target", fFile.c_str()), 0);
  const Result<std::string> kept = keepRejectedFile(fFile);
  ASSERT_TRUE(kept.ok());
  EXPECT_EQ(readFile(fFolder / "real/target.rejected"), "old");
  ASSERT_TRUE(writeFileAtomically(fFile, "new").ok());
  EXPECT_TRUE(std::filesystem::is_symlink(fFile));
  EXPECT_EQ(readFile(fFolder / "real/target"), "new");
}

TEST_F(RejectedFile, LinkThatLeadsInACircleIsMovedItself) {
  ASSERT_EQ(symlink("file", fFile.c_str()), 0);
  ASSERT_TRUE(keepRejectedFile(fFile).ok());
  EXPECT_TRUE(std::filesystem::is_symlink(fFolder / "file.rejected"));
  EXPECT_FALSE(std::filesystem::is_symlink(fFile));
}

TEST_F(RejectedFile, IsPutBackUnderItsOwnName) {
  writeFile(fFile, "bad");
  writeFile(fFile + ".rejected", "older");
  const auto kept = keepRejectedFile(fFile);
  ASSERT_TRUE(kept.ok());
  ASSERT_TRUE(putRejectedFileBack(kept.value()).ok());
  EXPECT_EQ(readFile(fFile), "bad");
  EXPECT_EQ(readFile(fFile + ".rejected"), "older");
}

TEST_F(RejectedFile, IsNotPutBackOverAnotherFile) {
  writeFile(fFile, "bad");
  const auto kept = keepRejectedFile(fFile);
  writeFile(fFile, "new");
  EXPECT_EQ(putRejectedFileBack(kept.value()).error().code, EEXIST);
  EXPECT_EQ(readFile(fFile), "new");
  EXPECT_EQ(readFile(kept.value()), "bad");
}

TEST_F(RejectedFile, WithoutTheSuffixIsNotPutBack) {
  writeFile(fFile, "bad");
  EXPECT_EQ(putRejectedFileBack(fFile).error().code, EINVAL);
  EXPECT_EQ(putRejectedFileBack(fFolder / "none/file.rejected").error().code, ENOENT);
}

}  // namespace
}  // namespace veltrix
