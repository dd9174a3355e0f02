#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "platform/property_list_io.h"

namespace veltrix::plist {
namespace {

std::string written(const Value& value) {
  const Result<std::string> result = writeBinary(value);
  EXPECT_TRUE(result.ok());
  return result ? result.value() : std::string();
}

// The bytes of the only object.
std::string object(const Value& value) {
  const std::string bytes = written(value);
  constexpr std::size_t kAround = 8 + 1 + 32;
  return bytes.size() < kAround ? std::string() : bytes.substr(8, bytes.size() - kAround);
}

std::string bytes(std::initializer_list<int> values) {
  std::string out;
  for (const int value : values) {
    out.push_back(static_cast<char>(static_cast<unsigned char>(value)));
  }
  return out;
}

TEST(PropertyListBinaryWriter, WritesIntegersInTheSmallestSize) {
  EXPECT_EQ(object(0), bytes({0x10, 0}));
  EXPECT_EQ(object(255), bytes({0x10, 255}));
  EXPECT_EQ(object(256), bytes({0x11, 1, 0}));
  EXPECT_EQ(object(65536), bytes({0x12, 0, 1, 0, 0}));
  EXPECT_EQ(object(0x1'0000'0000), bytes({0x13, 0, 0, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(object(-1), bytes({0x13, 255, 255, 255, 255, 255, 255, 255, 255}));
}

TEST(PropertyListBinaryWriter, WritesTheOtherScalars) {
  EXPECT_EQ(object(true), bytes({0x09}));
  EXPECT_EQ(object(false), bytes({0x08}));
  EXPECT_EQ(object(1.0), bytes({0x23, 0x3F, 0xF0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(object(Date{1.0}), bytes({0x33, 0x3F, 0xF0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(object(Data{std::byte{7}}), bytes({0x41, 7}));
  EXPECT_EQ(object("ab"), bytes({0x52, 'a', 'b'}));
  EXPECT_EQ(object("\xE2\x82\xAC"), bytes({0x61, 0x20, 0xAC}));
  EXPECT_EQ(object("\xF0\x9F\x98\x80"), bytes({0x62, 0xD8, 0x3D, 0xDE, 0x00}));
  EXPECT_EQ(object(std::string(15, 'a')), bytes({0x5F, 0x10, 15}) + std::string(15, 'a'));
}

TEST(PropertyListBinaryWriter, WritesEqualScalarsOnce) {
  Array array = Array::create();
  const std::string text(100, 'x');
  for (int i = 0; i < 50; ++i) {
    array.append(text);
    array.append(7);
    array.append(7.0);
    array.append(true);
  }
  EXPECT_LT(written(array).size(), 400U);
  const Result<Document> back = read(written(array));
  ASSERT_TRUE(back.ok());
  EXPECT_TRUE(equal(back.value().root, array));
}

TEST(PropertyListBinaryWriter, GivesTheSameBytesForTheSameValue) {
  Dictionary root = Dictionary::create();
  for (int i = 0; i < 300; ++i) {
    root.set("key" + std::to_string(i), i % 7);
  }
  const std::string once = written(root);
  EXPECT_EQ(once, written(root));
  EXPECT_EQ(once, written(read(once).value().root));
}

TEST(PropertyListBinaryWriter, CarriesEveryCharacter) {
  const std::string text = std::string("a\0b", 3) + "\x01\xEF\xBF\xBE";
  EXPECT_TRUE(equal(read(written(text)).value().root, text));
}

TEST(PropertyListBinaryWriter, RefusesWhatTheFormCannotHold) {
  EXPECT_FALSE(writeBinary(Value()).ok());
  EXPECT_FALSE(writeBinary("\xFF").ok());
  EXPECT_FALSE(writeBinary(Date{std::nan("")}).ok());
  EXPECT_FALSE(writeBinary(Date{std::numeric_limits<double>::infinity()}).ok());
  Array array = Array::create();
  array.append(1);
  array.mutableItems()->emplace_back();
  EXPECT_FALSE(writeBinary(array).ok());
}

}  // namespace
}  // namespace veltrix::plist
