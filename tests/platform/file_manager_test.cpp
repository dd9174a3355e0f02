#include "platform/file_manager.h"

#include <gtest/gtest.h>

#include "tests/support/private_bus.h"

namespace veltrix {
namespace {

TEST(FileUrl, OrdinaryCharactersStandForThemselves) {
  EXPECT_EQ(fileUrl("/home/me/a-b_c.d~1"), "file:///home/me/a-b_c.d~1");
}

TEST(FileUrl, EveryOtherByteIsEscaped) {
  EXPECT_EQ(fileUrl("/a b"), "file:///a%20b");
  EXPECT_EQ(fileUrl("/%#?;&\"\n"), "file:///%25%23%3F%3B%26%22%0A");
  EXPECT_EQ(fileUrl("/ü\xFF"), "file:///%C3%BC%FF");
}

TEST(FileManager, ABusWithoutOneIsReported) {
  const testing::PrivateBus bus;
  const Status status = showInFileManager("/tmp", bus.address());
  ASSERT_FALSE(status.ok());
  EXPECT_NE(status.error().code, 0);
}

TEST(FileManager, NoBusIsReported) {
  EXPECT_FALSE(showInFileManager("/tmp", "unix:path=/nonexistent/bus").ok());
}

}  // namespace
}  // namespace veltrix
