#include "platform/key_file.h"

#include <gtest/gtest.h>

#include <string>

namespace veltrix {
namespace {

std::string read(std::string_view bytes, std::string_view group) {
  std::string said;
  readKeyFileGroup(bytes, group, [&said](std::string_view key, std::string_view value) {
    said += std::string(key) + "|" + std::string(value) + "\n";
  });
  return said;
}

TEST(KeyFile, GroupsOfTheNameAreReadAlone) {
  EXPECT_EQ(read("a=0\n[One]\na=1\n[Two]\na=2\n[One more]\na=3\n[One]\nb=4", "One"), "a|1\nb|4\n");
}

TEST(KeyFile, BlanksAroundKeysAndValuesDoNotCount) {
  EXPECT_EQ(read(" [G] \r\n\t a\t= b c \r\n", "G"), "a|b c\n");
}

TEST(KeyFile, EveryFurtherEqualsSignBelongsToTheValue) {
  EXPECT_EQ(read("[G]\na==b=c\n", "G"), "a|=b=c\n");
}

TEST(KeyFile, CommentsAndLinesWithoutEqualsSignArePassedOver) {
  EXPECT_EQ(read("[G]\n#a=1\n\nb\n[G\nc=3\n", "G"), "");
  EXPECT_EQ(read("[G]\nb\nc=3\n", "G"), "c|3\n");
}

}  // namespace
}  // namespace veltrix
