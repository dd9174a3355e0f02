#include "util/system_error.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace veltrix {
namespace {

TEST(SystemError, SaysWhatWasDoneWhereAndWhyItFailed) {
  const Error error = systemError(ENOENT, "cannot read", "/a/b");
  EXPECT_EQ(error.code, ENOENT);
  EXPECT_EQ(error.message, "cannot read /a/b: No such file or directory");
  EXPECT_EQ(error.offset, std::nullopt);
}

}  // namespace
}  // namespace veltrix
