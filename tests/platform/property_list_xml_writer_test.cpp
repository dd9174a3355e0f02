#include <gtest/gtest.h>

#include <string>

#include "platform/property_list_io.h"

namespace veltrix::plist {
namespace {

constexpr const char* kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

std::string inside(const Value& value) {
  const Result<std::string> result = writeXml(value);
  EXPECT_TRUE(result.ok());
  const std::string text = result ? result.value() : std::string();
  const std::string head = kHead;
  const std::string tail = "</plist>\n";
  EXPECT_EQ(text.substr(0, head.size()), head);
  EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
  return text.substr(head.size(), text.size() - head.size() - tail.size());
}

TEST(PropertyListXmlWriter, IndentsWithTabs) {
  Dictionary root = Dictionary::create();
  Array array = Array::create();
  array.append(1);
  array.append(Data{std::byte{0}, std::byte{1}});
  root.set("list", array);
  root.set("none", Array::create());
  root.set("empty", Dictionary::create());
  EXPECT_EQ(
      inside(root),
      "<dict>\n\t<key>list</key>\n\t<array>\n\t\t<integer>1</integer>\n\t\t<data>\n\t\tAAE=\n\t\t</data>\n"
      "\t</array>\n\t<key>none</key>\n\t<array/>\n\t<key>empty</key>\n\t<dict/>\n</dict>\n");
}

TEST(PropertyListXmlWriter, WritesScalars) {
  EXPECT_EQ(inside(true), "<true/>\n");
  EXPECT_EQ(inside(-5), "<integer>-5</integer>\n");
  EXPECT_EQ(inside(0.74), "<real>0.74</real>\n");
  EXPECT_EQ(inside("a<b>&\"'\r\n"), "<string>a&lt;b&gt;&amp;\"'&#13;\n</string>\n");
  EXPECT_EQ(inside(""), "<string></string>\n");
  EXPECT_EQ(inside(Date{0.5}), "<date>2001-01-01T00:00:00Z</date>\n");
  EXPECT_EQ(inside(Data{}), "<data>\n</data>\n");
}

TEST(PropertyListXmlWriter, BreaksLongData) {
  const std::string text = inside(Data(52));
  EXPECT_EQ(text, "<data>\n" + std::string(68, 'A') + "\nAA==\n</data>\n");
}

TEST(PropertyListXmlWriter, RefusesWhatXmlCannotHold) {
  EXPECT_FALSE(writeXml(Value()).ok());
  EXPECT_FALSE(writeXml("\xFF").ok());
  EXPECT_FALSE(writeXml("\x01").ok());
  EXPECT_FALSE(writeXml(std::string(1, '\0')).ok());
  EXPECT_FALSE(writeXml("\xEF\xBF\xBE").ok());
  EXPECT_FALSE(writeXml(Date{1e300}).ok());
  Dictionary root = Dictionary::create();
  root.set("\x02", 1);
  EXPECT_FALSE(writeXml(root).ok());
  Array array = Array::create();
  array.append(1);
  array.mutableItems()->emplace_back();
  EXPECT_FALSE(writeXml(array).ok());
}

}  // namespace
}  // namespace veltrix::plist
