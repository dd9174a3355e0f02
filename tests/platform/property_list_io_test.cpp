#include "platform/property_list_io.h"

#include <gmock/gmock.h>

namespace veltrix::plist {
namespace {

Value document() {
  Dictionary root = Dictionary::create();
  root.set("true", true);
  root.set("integer", -5);
  root.set("real", 0.74);
  root.set("text", "a < b & c\r\n\u20AC \U0001F600");
  root.set("data", Data{std::byte{0}, std::byte{255}, std::byte{7}, std::byte{9}});
  root.set("date", Date{86400});
  Array array = Array::create();
  array.append("");
  array.append(Dictionary::create());
  array.append(Array::create());
  root.set("array", array);
  return root;
}

TEST(PropertyListIo, WritesAndReadsXml) {
  const Result<std::string> written = writeXml(document());
  ASSERT_TRUE(written.ok());
  const Result<Document> result = read(written.value());
  ASSERT_TRUE(result.ok()) << result.error().message;
  EXPECT_EQ(result.value().format, Format::kXml);
  EXPECT_TRUE(equal(result.value().root, document()));
}

TEST(PropertyListIo, WritesAndReadsBinary) {
  const Result<std::string> written = writeBinary(document());
  ASSERT_TRUE(written.ok());
  const Result<Document> result = read(written.value());
  ASSERT_TRUE(result.ok()) << result.error().message;
  EXPECT_EQ(result.value().format, Format::kBinary);
  EXPECT_TRUE(equal(result.value().root, document()));
}

}  // namespace
}  // namespace veltrix::plist
