#include "platform/property_list_io.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <fstream>

#include "platform/text_encoding.h"
#include "tests/support/property_list_generator.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::plist {
namespace {

using veltrix::testing::PropertyListGenerator;
using veltrix::testing::TemporaryFolder;

constexpr const char* kXml = "<plist><string>\xE2\x82\xAC</string></plist>";

std::string utf16(std::string_view utf8, ByteOrder order) {
  std::string out = utf16BigEndian(utf8);
  for (std::size_t at = 0; order == ByteOrder::kLittleEndian && at < out.size(); at += 2) {
    std::swap(out[at], out[at + 1]);
  }
  return out;
}

Document readGood(std::string_view bytes) {
  const Result<Document> result = read(bytes);
  EXPECT_TRUE(result.ok()) << result.error().message;
  return result ? result.value() : Document();
}

TEST(PropertyListIo, RecognisesTheFormat) {
  EXPECT_EQ(readGood(kXml).format, Format::kXml);
  EXPECT_EQ(readGood(" \n<!-- c --><plist><true/></plist>").format, Format::kXml);
  EXPECT_EQ(readGood("<dict/>").format, Format::kXml);
  EXPECT_EQ(readGood("<data></data>").format, Format::kXml);
  EXPECT_EQ(readGood(writeBinary(5).value()).format, Format::kBinary);
  EXPECT_EQ(readGood("{ a = b; }").format, Format::kText);
  EXPECT_EQ(readGood("<da 0a>").format, Format::kText);
  EXPECT_EQ(readGood("<>").format, Format::kText);
}

TEST(PropertyListIo, ReadsEveryEncoding) {
  const std::string text = kXml;
  for (const std::string& bytes :
       {text, "\xEF\xBB\xBF" + text, "\xFE\xFF" + utf16(text, ByteOrder::kBigEndian),
        "\xFF\xFE" + utf16(text, ByteOrder::kLittleEndian), utf16(text, ByteOrder::kBigEndian),
        utf16(text, ByteOrder::kLittleEndian)}) {
    EXPECT_EQ(readGood(bytes).root.asString(), "\xE2\x82\xAC");
  }
  const std::string old = "{ a = \"\xE2\x82\xAC\"; }";
  EXPECT_EQ(readGood("\xFF\xFE" + utf16(old, ByteOrder::kLittleEndian)).root.asDictionary().stringFor("a"),
            "\xE2\x82\xAC");
}

TEST(PropertyListIo, CountsOffsetsInTheBytesThatItWasGiven) {
  const std::string bad = "<plist><string>\xF0\x9F\x98\x80</string><odd/></plist>";
  const std::size_t place = bad.find("<odd/>");
  EXPECT_EQ(read(bad).error().offset, place);
  EXPECT_EQ(read("\xEF\xBB\xBF" + bad).error().offset, place + 3);
  // The character before the place has four bytes as UTF-8 and two units as UTF-16.
  EXPECT_EQ(read("\xFE\xFF" + utf16(bad, ByteOrder::kBigEndian)).error().offset, 2 + (place - 2) * 2);
  EXPECT_EQ(read("\xFF\xFE" + utf16("ab", ByteOrder::kLittleEndian) + "\x3D\xD8").error().offset, 6U);
  EXPECT_EQ(read("\xFF\xFE"
                 "a")
                .error()
                .offset,
            2U);
}

TEST(PropertyListIo, RefusesEmptyDocuments) {
  for (const char* empty : {"", " ", "\n\t\r\n", "\xEF\xBB\xBF", "\xFE\xFF", "\xFF\xFE"}) {
    const Result<Document> result = read(empty);
    ASSERT_FALSE(result.ok());
    EXPECT_TRUE(result.error().offset.has_value());
  }
}

TEST(PropertyListIo, RefusesOtherFiles) {
  EXPECT_FALSE(read("\x7F"
                    "ELF\x02\x01\x01")
                   .ok());
  EXPECT_FALSE(read("\x89PNG\r\n").ok());
  EXPECT_FALSE(read("<html><body/></html>").ok());
  EXPECT_FALSE(read("{\"json\": 1}").ok());
  EXPECT_FALSE(read(std::string(1000, '\0')).ok());
  EXPECT_FALSE(read("\xFF\xFE\0\0<\0\0\0").ok());
}

TEST(PropertyListIo, RefusesMoreThan64Mebibytes) {
  const std::string text = "<plist><true/></plist>";
  EXPECT_TRUE(read(text + std::string(kMaximumFileBytes - text.size(), ' ')).ok());
  EXPECT_FALSE(read(text + std::string(kMaximumFileBytes - text.size() + 1, ' ')).ok());
}

TEST(PropertyListIo, ReadsFiles) {
  const TemporaryFolder folder;
  const std::string path = folder / "list.plist";
  std::ofstream(path) << kXml;
  const Result<Document> result = readFile(path);
  ASSERT_TRUE(result.ok()) << result.error().message;
  EXPECT_EQ(result.value().root.asString(), "\xE2\x82\xAC");
}

TEST(PropertyListIo, SaysWhyAFileCannotBeRead) {
  const TemporaryFolder folder;
  EXPECT_EQ(readFile(folder / "none").error().code, ENOENT);
  EXPECT_EQ(readFile(folder.path()).error().code, EISDIR);
  const std::string bad = folder / "bad";
  std::ofstream(bad) << "<plist><odd/></plist>";
  EXPECT_EQ(readFile(bad).error().code, 0);
  EXPECT_EQ(readFile(bad).error().offset, 7U);
  const std::string empty = folder / "empty";
  std::ofstream(empty).flush();
  EXPECT_FALSE(readFile(empty).ok());
}

TEST(PropertyListIo, DoesNotWaitForAPipe) {
  const TemporaryFolder folder;
  const std::string pipe = folder / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(readFile(pipe).error().code, EINVAL);
}

TEST(PropertyListIo, RefusesAFileOverTheLimitWithoutReadingIt) {
  const TemporaryFolder folder;
  const std::string path = folder / "large";
  std::ofstream(path).flush();
  std::filesystem::resize_file(path, std::uintmax_t{1} << 40U);
  EXPECT_EQ(readFile(path).error().code, EFBIG);
}

RC_GTEST_PROP(PropertyListIo, ReadsBackTheXmlThatItWrites, (std::uint64_t seed)) {
  const Value value = PropertyListGenerator(seed).document();
  const Result<std::string> bytes = writeXml(value);
  RC_ASSERT(bytes.ok());
  const Result<Document> back = read(bytes.value());
  RC_ASSERT(back.ok());
  RC_ASSERT(equal(back.value().root, value));
  RC_ASSERT(writeXml(back.value().root).value() == bytes.value());
}

RC_GTEST_PROP(PropertyListIo, ReadsBackTheBinaryThatItWrites, (std::uint64_t seed)) {
  const Value value = PropertyListGenerator(seed).document();
  const Result<std::string> bytes = writeBinary(value);
  RC_ASSERT(bytes.ok());
  const Result<Document> back = read(bytes.value());
  RC_ASSERT(back.ok());
  RC_ASSERT(equal(back.value().root, value));
  RC_ASSERT(writeBinary(back.value().root).value() == bytes.value());
}

RC_GTEST_PROP(PropertyListIo, SurvivesEveryBrokenByte, (std::uint64_t seed)) {
  const Value value = PropertyListGenerator(seed).document();
  for (std::string bytes : {writeXml(value).value(), writeBinary(value).value()}) {
    bytes[*rc::gen::inRange<std::size_t>(0, bytes.size())] = *rc::gen::arbitrary<char>();
    const Result<Document> result = read(bytes);
    RC_ASSERT((result.ok() || result.error().offset.value() <= bytes.size()));
  }
}

}  // namespace
}  // namespace veltrix::plist
