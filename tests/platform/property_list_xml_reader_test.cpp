#include "platform/property_list_xml_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/property_list_io.h"

namespace veltrix::plist {
namespace {

std::string document(const std::string& inside) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + inside + "</plist>\n";
}

Value readGood(const std::string& inside) {
  const Result<Value> result = readXml(document(inside));
  EXPECT_TRUE(result.ok()) << inside << ": " << result.error().message;
  return result ? result.value() : Value();
}

// Expects an error at the place of `mark` in the document.
void expectErrorAt(const std::string& inside, const std::string& mark) {
  const std::string bytes = document(inside);
  const Result<Value> result = readXml(bytes);
  ASSERT_FALSE(result.ok()) << inside;
  EXPECT_EQ(result.error().offset, bytes.find(mark)) << inside << ": " << result.error().message;
}

std::string nested(std::size_t levels) {
  std::string text;
  for (std::size_t i = 0; i < levels; ++i) {
    text += "<array>";
  }
  for (std::size_t i = 0; i < levels; ++i) {
    text += "</array>";
  }
  return text;
}

TEST(PropertyListXmlReader, ReadsEveryType) {
  const Dictionary root =
      readGood(
          "<dict><key>t</key><true/><key>f</key><false></false><key>i</key><integer>-5</integer>"
          "<key>r</key><real>0.74</real><key>s</key><string>x</string>"
          "<key>d</key><data>AAE=</data><key>w</key><date>2001-01-01T00:00:01Z</date>"
          "<key>a</key><array><integer>1</integer></array><key>e</key><dict/></dict>")
          .asDictionary();
  EXPECT_EQ(root.count(), 9U);
  EXPECT_TRUE(equal(root.get("t"), true));
  EXPECT_TRUE(equal(root.get("f"), false));
  EXPECT_TRUE(equal(root.get("i"), -5));
  EXPECT_TRUE(equal(root.get("r"), 0.74));
  EXPECT_TRUE(equal(root.get("s"), "x"));
  EXPECT_TRUE(equal(root.get("d"), Data{std::byte{0}, std::byte{1}}));
  EXPECT_TRUE(equal(root.get("w"), Date{1}));
  EXPECT_EQ(root.arrayFor("a").at(0).asInt64(), 1);
  EXPECT_EQ(root.get("e").type(), Type::kDictionary);
}

TEST(PropertyListXmlReader, ReadsAValueWithoutAPlistElement) {
  const Result<Value> result = readXml("<dict><key>a</key><integer>1</integer></dict>");
  ASSERT_TRUE(result.ok());
  EXPECT_EQ(result.value().asDictionary().int32For("a"), 1);
}

TEST(PropertyListXmlReader, KeepsBlanksOfStrings) {
  EXPECT_EQ(readGood("<string>  </string>").asString(), "  ");
  EXPECT_EQ(readGood("<string> a\tb \n</string>").asString(), " a\tb \n");
  EXPECT_EQ(readGood("<string/>").asString(), "");
  EXPECT_EQ(readGood("<string></string>").type(), Type::kString);
}

TEST(PropertyListXmlReader, ReadsLineEndsAsLineFeeds) {
  EXPECT_EQ(readGood("<string>a\r\nb\rc\nd</string>").asString(), "a\nb\nc\nd");
  EXPECT_EQ(readGood("<string>a&#13;&#xA;b</string>").asString(), "a\r\nb");
}

TEST(PropertyListXmlReader, ResolvesCharacterReferences) {
  EXPECT_EQ(readGood("<string>&lt;&gt;&amp;&quot;&apos;&#65;&#x20AC;&#128512;&amp;lt;</string>").asString(),
            "<>&\"'A\xE2\x82\xAC\xF0\x9F\x98\x80&lt;");
  EXPECT_TRUE(readGood("<dict><key>a&amp;b</key><true/></dict>").asDictionary().contains("a&b"));
  EXPECT_EQ(readGood("<integer>&#49;2</integer>").asInt64(), 12);
}

TEST(PropertyListXmlReader, RefusesBadCharacterReferences) {
  for (const char* bad : {"&nbsp;", "&", "& ", "&#0;", "&#1;", "&#xD800;", "&#x110000;", "&#99999999999;",
                          "&#;", "&#x;", "&;", "&#-5;", "&lt", "&#xFFFE;"}) {
    expectErrorAt("<string>abc" + std::string(bad) + "</string>", bad);
  }
}

TEST(PropertyListXmlReader, ReadsSectionsAndComments) {
  EXPECT_EQ(readGood("<string><![CDATA[<&lt;>]]></string>").asString(), "<&lt;>");
  EXPECT_EQ(readGood("<string>a<!-- no -->b<![CDATA[ ]]> <![CDATA[c]]></string>").asString(), "ab  c");
  EXPECT_EQ(readGood("<!-- first --><array><!-- in --><true/><!-- out --></array>").asArray().count(), 1U);
}

TEST(PropertyListXmlReader, SkipsTheDoctypeAndItsInside) {
  const Result<Value> result = readXml(
      "<?xml version='1.0'?><!DOCTYPE plist [<!ENTITY a \"b\"><!ELEMENT x (y)>]><plist><true/></plist>");
  ASSERT_TRUE(result.ok()) << result.error().message;
  EXPECT_TRUE(result.value().asBool());
  EXPECT_FALSE(readXml("<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><string>&a;</string></plist>").ok());
}

TEST(PropertyListXmlReader, SurvivesDeepDoctypes) {
  std::string doctype = "<!DOCTYPE plist [";
  for (int i = 0; i < 100000; ++i) {
    doctype += "<![IGNORE[<!X ";
  }
  EXPECT_FALSE(readXml(doctype + "<plist><true/></plist>").ok());
}

TEST(PropertyListXmlReader, RefusesBadContentsOfScalars) {
  for (const char* bad : {"<integer></integer>", "<integer/>", "<integer>1.5</integer>",
                          "<integer>one</integer>", "<integer>9223372036854775808</integer>", "<real></real>",
                          "<real>0,74</real>", "<date>2024-02-30T00:00:00Z</date>", "<date/>",
                          "<data>A</data>", "<data>A*==</data>", "<true>x</true>", "<false>0</false>"}) {
    expectErrorAt("<array><true/>" + std::string(bad) + "</array>", bad);
  }
}

TEST(PropertyListXmlReader, RefusesUnknownElements) {
  expectErrorAt("<set><true/></set>", "<true/>");
  expectErrorAt("<array><ustring>x</ustring></array>", "<ustring");
  expectErrorAt("<array><key>x</key></array>", "<key");
  expectErrorAt("<array><plist/></array>", "<plist/>");
  expectErrorAt("<array><String>x</String></array>", "<String");
}

TEST(PropertyListXmlReader, RefusesElementsInsideScalars) {
  expectErrorAt("<string>a<true/></string>", "<true/>");
  expectErrorAt("<dict><key><string>a</string></key><true/></dict>", "<string>");
  expectErrorAt("<true><true/></true>", "<true/>");
}

TEST(PropertyListXmlReader, RefusesKeysAndValuesOutOfStep) {
  expectErrorAt("<dict><key>a</key></dict>", "<key>a");
  expectErrorAt("<dict><key>a</key><key>b</key><true/></dict>", "<key>b");
  expectErrorAt("<dict><true/></dict>", "<true/>");
  expectErrorAt("<dict><key>a</key><true/><false/></dict>", "<false/>");
}

TEST(PropertyListXmlReader, RefusesTextBetweenElements) {
  expectErrorAt("<array>stray<true/></array>", "stray");
  expectErrorAt("<dict><key>a</key>stray<true/></dict>", "stray");
  expectErrorAt("<true/>stray", "stray");
  EXPECT_FALSE(readXml("<plist><true/></plist>stray").ok());
  EXPECT_FALSE(readXml("stray<plist><true/></plist>").ok());
}

TEST(PropertyListXmlReader, RefusesAnythingButOneValue) {
  EXPECT_FALSE(readXml("<plist/>").ok());
  EXPECT_FALSE(readXml("<plist> </plist>").ok());
  EXPECT_FALSE(readXml("<!-- nothing -->").ok());
  EXPECT_FALSE(readXml("<plist><true/></plist><plist><true/></plist>").ok());
  expectErrorAt("<true/><false/>", "<false/>");
}

TEST(PropertyListXmlReader, TakesTheLastOfTwoValuesOfAKey) {
  const Dictionary root =
      readGood(
          "<dict><key>a</key><integer>1</integer><key>b</key><true/><key>a</key><integer>2</integer></dict>")
          .asDictionary();
  EXPECT_EQ(root.count(), 2U);
  EXPECT_EQ(root.int32For("a"), 2);
  EXPECT_EQ(root.keys().front(), "a");
}

TEST(PropertyListXmlReader, RefusesBadXml) {
  for (const char* bad : {"<plist>", "<plist><array></plist>", "<plist><true></false></plist>",
                          "<plist><string>x", "<plist><true/", "<plist", "<", "<plist><![CDATA[",
                          "<plist><!--", "<!DOCTYPE", "<?xml", "<plist a"}) {
    const Result<Value> result = readXml(bad);
    ASSERT_FALSE(result.ok()) << bad;
    ASSERT_TRUE(result.error().offset.has_value()) << bad;
    EXPECT_LE(*result.error().offset, std::string(bad).size()) << bad;
  }
}

TEST(PropertyListXmlReader, RefusesBytesAndCharactersThatXmlCannotHold) {
  expectErrorAt("<string>abc\xFF</string>", "\xFF");
  expectErrorAt("<string>abc\xED\xA0\x80</string>", "\xED\xA0\x80");
  expectErrorAt("<string>abc\x01</string>", "\x01");
  expectErrorAt("<string>abc\xEF\xBF\xBF</string>", "\xEF\xBF\xBF");
  const std::string withZero = document("<true/>") + std::string(1, '\0') + "more";
  ASSERT_FALSE(readXml(withZero).ok());
  EXPECT_EQ(readXml(withZero).error().offset, withZero.find('\0'));
}

TEST(PropertyListXmlReader, RefusesOtherEncodings) {
  EXPECT_FALSE(readXml("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><plist><true/></plist>").ok());
  EXPECT_TRUE(readXml("<?xml version=\"1.0\" encoding=\"utf-8\"?><plist><true/></plist>").ok());
  EXPECT_TRUE(readXml("<?xml version=\"1.0\"?><plist><true/></plist>").ok());
}

TEST(PropertyListXmlReader, LimitsTheNesting) {
  EXPECT_TRUE(readXml(document(nested(kMaximumNesting))).ok());
  const std::string tooDeep = document(nested(kMaximumNesting + 1));
  const Result<Value> result = readXml(tooDeep);
  ASSERT_FALSE(result.ok());
  EXPECT_EQ(result.error().offset, tooDeep.rfind("<array>"));
  EXPECT_FALSE(readXml(document(nested(29'000))).ok());
  EXPECT_FALSE(readXml(document(nested(1'000'000))).ok());
}

TEST(PropertyListXmlReader, LimitsTheValues) {
  std::string many = "<plist><array>";
  for (std::size_t i = 0; i <= kMaximumNodes; ++i) {
    many += "<true/>";
  }
  const Result<Value> result = readXml(many + "</array></plist>");
  ASSERT_FALSE(result.ok());
  EXPECT_EQ(result.error().message, "too many values");
}

}  // namespace
}  // namespace veltrix::plist
