#include "platform/property_list_text_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/property_list_io.h"

namespace veltrix::plist {
namespace {

Value readGood(const std::string& text) {
  const Result<Value> result = readText(text);
  EXPECT_TRUE(result.ok()) << text << ": " << result.error().message;
  return result ? result.value() : Value();
}

void expectErrorAt(const std::string& text, std::size_t offset) {
  const Result<Value> result = readText(text);
  ASSERT_FALSE(result.ok()) << text;
  EXPECT_EQ(result.error().offset, offset) << text << ": " << result.error().message;
}

TEST(PropertyListTextReader, ReadsDictionariesAndArrays) {
  const Dictionary root = readGood("{ a = 1; \"b c\" = (x, \"y\", (), {}); d={e=f;}; }").asDictionary();
  EXPECT_EQ(root.count(), 3U);
  EXPECT_EQ(root.get("a").type(), Type::kString);
  EXPECT_EQ(root.int32For("a"), 1);
  EXPECT_EQ(root.arrayFor("b c").count(), 4U);
  EXPECT_EQ(root.dictionaryFor("d").stringFor("e"), "f");
}

TEST(PropertyListTextReader, TakesACommaAfterTheLastItem) {
  EXPECT_EQ(readGood("(a, b, )").asArray().count(), 2U);
}

TEST(PropertyListTextReader, ReadsData) {
  EXPECT_TRUE(equal(readGood("<00 fF\n7 0>"), Data{std::byte{0}, std::byte{255}, std::byte{0x70}}));
  EXPECT_TRUE(equal(readGood("<>"), Data{}));
}

TEST(PropertyListTextReader, ReadsBareWords) {
  EXPECT_EQ(readGood("com.aldmoor.veltrix_1-2:/$x").asString(), "com.aldmoor.veltrix_1-2:/$x");
  EXPECT_EQ(readGood(" -1.5 \n").asString(), "-1.5");
}

TEST(PropertyListTextReader, ReadsEscapes) {
  EXPECT_EQ(readGood(R"("\a\b\f\n\r\t\v\\\"\'\q")").asString(), "\a\b\f\n\r\t\v\\\"'q");
  EXPECT_EQ(readGood(R"("\101\7\0601")").asString(), "A\a01");
  EXPECT_EQ(readGood(R"("\351")").asString(), "\xC3\xA9");
  EXPECT_EQ(readGood(R"("\U20AC\u20ac\UD83D\UDE00")").asString(), "\xE2\x82\xAC\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(readGood("\"a\\\nb\"").asString(), "a\nb");
  EXPECT_EQ(readGood("'say \"hi\"'").asString(), "say \"hi\"");
}

TEST(PropertyListTextReader, RefusesBadEscapes) {
  expectErrorAt(R"("ab\U")", 3);
  expectErrorAt(R"("ab\UD83D")", 3);
  expectErrorAt(R"("ab\UD83D\n")", 3);
  expectErrorAt(R"("ab\UD83D\U0041")", 3);
  expectErrorAt(R"("ab\UDE00")", 3);
  expectErrorAt(R"("ab\777")", 3);
  expectErrorAt("\"ab\\", 3);
}

TEST(PropertyListTextReader, SkipsComments) {
  EXPECT_EQ(
      readGood("// first\n{ /* in */ a /**/ = // x\r b /* } */ ; } // last").asDictionary().stringFor("a"),
      "b");
  EXPECT_EQ(readGood("a/*c*/").asString(), "a");
  EXPECT_EQ(readGood("a//c").asString(), "a");
}

TEST(PropertyListTextReader, ReadsTheInsideOfADictionaryAlone) {
  const Dictionary root = readGood("/* strings */ \"a b\" = c;\nd = (e);").asDictionary();
  EXPECT_EQ(root.stringFor("a b"), "c");
  EXPECT_EQ(root.arrayFor("d").count(), 1U);
  expectErrorAt("a = b; }", 7);
  expectErrorAt("a = b; (c)", 7);
}

TEST(PropertyListTextReader, TakesTheLastOfTwoValuesOfAKey) {
  EXPECT_EQ(readGood("{ a = 1; a = 2; }").asDictionary().int32For("a"), 2);
}

TEST(PropertyListTextReader, RefusesBadStructure) {
  expectErrorAt("{ a = b }", 8);
  expectErrorAt("{ a b; }", 4);
  expectErrorAt("{ a = ; }", 6);
  expectErrorAt("{ = b; }", 2);
  expectErrorAt("{ a = b;", 0);
  expectErrorAt("(a b)", 3);
  expectErrorAt("(a,,b)", 3);
  expectErrorAt("(a", 2);
  expectErrorAt("(", 1);
  expectErrorAt("a b", 2);
  expectErrorAt("{} x", 3);
  expectErrorAt("\"abc", 0);
  expectErrorAt("/* abc", 0);
  expectErrorAt("&", 0);
  expectErrorAt("// only", 7);
  expectErrorAt("{ (a) = b; }", 2);
  expectErrorAt("{ a = b\xFF; }", 7);
}

TEST(PropertyListTextReader, RefusesBadData) {
  expectErrorAt("<0>", 0);
  expectErrorAt("<00", 0);
  expectErrorAt("<0g>", 2);
}

TEST(PropertyListTextReader, LimitsTheNesting) {
  const auto nested = [](std::size_t levels) { return std::string(levels, '(') + std::string(levels, ')'); };
  EXPECT_TRUE(readText(nested(kMaximumNesting)).ok());
  expectErrorAt(nested(kMaximumNesting + 1), kMaximumNesting);
  expectErrorAt(std::string(1'000'000, '('), kMaximumNesting);
  std::string dictionaries;
  for (int i = 0; i < 29'000; ++i) {
    dictionaries += "{a=";
  }
  EXPECT_FALSE(readText(dictionaries).ok());
}

}  // namespace
}  // namespace veltrix::plist
