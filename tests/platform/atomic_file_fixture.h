#pragma once

// A folder with the file that the tests of atomic files write.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/atomic_file.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::testing {

class AtomicFile : public ::testing::Test {
 protected:
  // The write fails with this errno value, the old file is whole and nothing else lies beside it.
  void expectFailureThatKeeps(const std::string& bytes, int code) {
    const Status status = writeFileAtomically(fFile, bytes);
    ASSERT_FALSE(status.ok());
    EXPECT_EQ(status.error().code, code) << status.error().message;
    EXPECT_THAT(status.error().message, ::testing::HasSubstr(fFile));
    EXPECT_EQ(readFile(fFile), "old");
    EXPECT_THAT(namesIn(fFolder.path()), ::testing::ElementsAre("file"));
  }

  TemporaryFolder fFolder;
  std::string fFile = fFolder / "file";
};

}  // namespace veltrix::testing
