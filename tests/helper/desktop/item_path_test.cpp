#include "helper/desktop/item_path.h"

#include <gmock/gmock.h>

#include "tests/helper/desktop/desktop_fixture.h"

namespace veltrix {
namespace {

using ::testing::HasSubstr;
using namespace std::string_literals;

class ItemPath : public testing::DesktopFixture {};

TEST_F(ItemPath, TildeIsTheHomeFolder) {
  testing::writeFile(home() + "/notes.txt", "");
  EXPECT_EQ(existingItem("~").value(), home());
  EXPECT_EQ(existingItem("~/").value(), home());
  EXPECT_EQ(existingItem("~/notes.txt").value(), home() + "/notes.txt");
}

TEST_F(ItemPath, AbsolutePathStaysAsItIs) {
  testing::writeFile(fFolder / "a $(b) ~\n.txt", "");
  EXPECT_EQ(existingItem(fFolder / "a $(b) ~\n.txt").value(), fFolder / "a $(b) ~\n.txt");
  EXPECT_EQ(existingItem(fFolder.path() + "//").value(), fFolder.path());
}

TEST_F(ItemPath, OtherPathsAreRefused) {
  for (const char* path : {"notes.txt", "./a", "~anna/notes.txt", "-a", "file:///etc/passwd", " /etc"}) {
    EXPECT_THAT(existingItem(path).error().message, HasSubstr("the path is not absolute")) << path;
  }
  EXPECT_FALSE(existingItem("/etc\0/passwd"s).ok());
  EXPECT_EQ(existingItem("").error().message, "no item is chosen");
}

TEST_F(ItemPath, MissingItemIsNamedInOneLine) {
  EXPECT_EQ(existingItem("~/missing\n.txt").error().message,
            "cannot open " + home() + "/missing?.txt: No such file or directory");
}

}  // namespace
}  // namespace veltrix
