#include "platform/resource_folder.h"

#include <gtest/gtest.h>

#include "tests/support/environment.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

class ResourceFolder : public ::testing::Test {
 protected:
  testing::TemporaryFolder fPrefix;
};

TEST_F(ResourceFolder, LiesInLibNextToTheProgramsFolder) {
  testing::writeFile(fPrefix / "lib/veltrix/Info.plist", "");
  EXPECT_EQ(resourceFolderFor(fPrefix / "bin/veltrixctl", "/fallback"), fPrefix / "lib/veltrix");
}

TEST_F(ResourceFolder, LiesAroundTheApplicationThatHoldsTheProgram) {
  testing::writeFile(fPrefix / "lib/veltrix/Info.plist", "");
  EXPECT_EQ(resourceFolderFor(fPrefix / "lib/veltrix/VeltrixHelper.app/VeltrixHelper", "/fallback"),
            fPrefix / "lib/veltrix");
}

TEST_F(ResourceFolder, IsTheFallbackForAProgramThatLiesElsewhere) {
  EXPECT_EQ(resourceFolderFor(fPrefix / "bin/veltrixctl", "/fallback"), "/fallback");
  EXPECT_EQ(resourceFolderFor("", "/fallback"), "/fallback");
  EXPECT_EQ(resourceFolderFor("/", "/fallback"), "/fallback");
}

TEST_F(ResourceFolder, EnvironmentComesFirst) {
  const testing::ScopedEnvironment resources("VELTRIX_RESOURCES", fPrefix.path());
  EXPECT_EQ(standardResourceFolder(), fPrefix.path());
}

TEST_F(ResourceFolder, EmptyEnvironmentCountsAsNone) {
  const testing::ScopedEnvironment resources("VELTRIX_RESOURCES", "");
  EXPECT_EQ(standardResourceFolder().substr(0, 1), "/");
}

}  // namespace
}  // namespace veltrix
