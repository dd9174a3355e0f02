#include "platform/application_folder.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

TEST(ApplicationFolder, NameIsTheLastComponentWithoutALowerCaseSuffix) {
  EXPECT_EQ(applicationName("/a/VeltrixHelper.app"), "VeltrixHelper");
  EXPECT_EQ(applicationName("/a/VeltrixHelper.app//"), "VeltrixHelper");
  EXPECT_EQ(applicationName("VeltrixHelper.app"), "VeltrixHelper");
  EXPECT_EQ(applicationName("/a/VeltrixHelper.APP"), "VeltrixHelper.APP");
  EXPECT_EQ(applicationName("/a/Twice.app.app"), "Twice.app");
  EXPECT_EQ(applicationName("/a/.app"), "");
  EXPECT_EQ(applicationName(""), "");
}

TEST(ApplicationFolder, ProgramBearsItsName) {
  EXPECT_EQ(programOfApplication("/a/Thing.app"), "/a/Thing.app/Thing");
  EXPECT_EQ(programOfApplication("/a/Thing.app/"), "/a/Thing.app/Thing");
}

TEST(ApplicationFolder, ApplicationOfAnotherPathIsThePackagedOneOfItsName) {
  const testing::TemporaryFolder resources;
  std::filesystem::create_directory(resources / "My Thing.app");
  std::filesystem::create_directory(resources / "folder");
  testing::writeFile(resources / "File.app", "");
  EXPECT_EQ(packagedApplication("/Applications/My Thing.app", resources.path()), resources / "My Thing.app");
  EXPECT_EQ(packagedApplication("/Applications/My Thing.app/", resources.path()), resources / "My Thing.app");
  for (const char* path : {"/Applications/Other.app", "/Applications/File.app", "/home/folder", "/", ""}) {
    EXPECT_EQ(packagedApplication(path, resources.path()), path);
  }
}

TEST(ApplicationFolder, NearestOneAroundAProgramCounts) {
  EXPECT_EQ(applicationOfProgram("/a/Thing.app/Thing"), "/a/Thing.app");
  EXPECT_EQ(applicationOfProgram("/a/Outer.app/in/Inner.app/x/Thing"), "/a/Outer.app/in/Inner.app");
  EXPECT_EQ(applicationOfProgram("/a/b/Thing.app"), std::nullopt);
  EXPECT_EQ(applicationOfProgram("Thing.app/Thing"), std::nullopt);
  EXPECT_EQ(applicationOfProgram("/"), std::nullopt);
  EXPECT_EQ(applicationOfProgram(""), std::nullopt);
}

}  // namespace
}  // namespace veltrix
