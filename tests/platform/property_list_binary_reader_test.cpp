#include "platform/property_list_binary_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "platform/property_list_io.h"

namespace veltrix::plist {
namespace {

std::string bytes(std::initializer_list<int> values) {
  std::string out;
  for (const int value : values) {
    out.push_back(static_cast<char>(static_cast<unsigned char>(value)));
  }
  return out;
}

void appendNumber(std::string& out, std::uint64_t value, std::size_t size) {
  for (std::size_t i = size; i > 0; --i) {
    out.push_back(static_cast<char>(static_cast<unsigned char>(value >> (8 * (i - 1)) & 0xFFU)));
  }
}

struct Trailer {
  std::size_t offsetSize = 1;
  std::size_t referenceSize = 1;
  std::uint64_t count = 0;
  std::uint64_t root = 0;
  std::uint64_t table = 0;
};

std::string trailer(const Trailer& fields) {
  std::string out(6, '\0');
  appendNumber(out, fields.offsetSize, 1);
  appendNumber(out, fields.referenceSize, 1);
  appendNumber(out, fields.count, 8);
  appendNumber(out, fields.root, 8);
  appendNumber(out, fields.table, 8);
  return out;
}

// A file of these objects; the first is the root.
std::string file(const std::vector<std::string>& objects, std::size_t offsetSize = 1,
                 std::size_t referenceSize = 1) {
  std::string out = "bplist00";
  std::string table;
  for (const std::string& object : objects) {
    appendNumber(table, out.size(), offsetSize);
    out += object;
  }
  const std::size_t at = out.size();
  return out + table + trailer({offsetSize, referenceSize, objects.size(), 0, at});
}

Value readGood(const std::string& contents) {
  const Result<Value> result = readBinary(contents);
  EXPECT_TRUE(result.ok()) << result.error().message << " at " << *result.error().offset;
  return result ? result.value() : Value();
}

void expectErrorAt(const std::string& contents, std::size_t offset) {
  const Result<Value> result = readBinary(contents);
  ASSERT_FALSE(result.ok());
  EXPECT_EQ(result.error().offset, offset) << result.error().message;
}

TEST(PropertyListBinaryReader, ReadsIntegersOfEverySize) {
  EXPECT_TRUE(equal(readGood(file({bytes({0x10, 0xFF})})), 255));
  EXPECT_TRUE(equal(readGood(file({bytes({0x11, 0xFF, 0xFE})})), 65534));
  EXPECT_TRUE(equal(readGood(file({bytes({0x12, 0xFF, 0xFF, 0xFF, 0xFF})})), 0xFFFFFFFFU));
  EXPECT_TRUE(equal(readGood(file({bytes({0x13}) + std::string(8, '\xFF')})), -1));
  EXPECT_TRUE(equal(readGood(file({bytes({0x14}) + std::string(15, '\0') + "\x05"})), 5));
  EXPECT_TRUE(equal(readGood(file({bytes({0x14}) + std::string(16, '\xFF')})), -1));
}

TEST(PropertyListBinaryReader, RefusesIntegersBeyond64Bits) {
  expectErrorAt(file({bytes({0x14}) + std::string(8, '\0') + std::string(8, '\xFF')}), 8);
  expectErrorAt(file({bytes({0x14, 1}) + std::string(15, '\0')}), 8);
  expectErrorAt(file({bytes({0x15}) + std::string(32, '\0')}), 8);
}

TEST(PropertyListBinaryReader, ReadsRealsAndDates) {
  EXPECT_TRUE(equal(readGood(file({bytes({0x22, 0x3F, 0x80, 0, 0})})), 1.0));
  EXPECT_TRUE(equal(readGood(file({bytes({0x23, 0x3F, 0xF0, 0, 0, 0, 0, 0, 0})})), 1.0));
  EXPECT_TRUE(equal(readGood(file({bytes({0x33, 0x3F, 0xF0, 0, 0, 0, 0, 0, 0})})), Date{1.0}));
  EXPECT_TRUE(std::isnan(readGood(file({bytes({0x23, 0x7F, 0xF8, 0, 0, 0, 0, 0, 0})})).asReal()));
  expectErrorAt(file({bytes({0x33, 0x7F, 0xF8, 0, 0, 0, 0, 0, 0})}), 8);
  expectErrorAt(file({bytes({0x32, 0x3F, 0x80, 0, 0})}), 8);
  expectErrorAt(file({bytes({0x21, 0, 0})}), 8);
}

TEST(PropertyListBinaryReader, ReadsStringsAndData) {
  EXPECT_TRUE(equal(readGood(file({bytes({0x52, 'a', 'b'})})), "ab"));
  EXPECT_TRUE(equal(readGood(file({bytes({0x61, 0x20, 0xAC})})), "\xE2\x82\xAC"));
  EXPECT_TRUE(equal(readGood(file({bytes({0x5F, 0x10, 2, 'a', 'b'})})), "ab"));
  EXPECT_TRUE(equal(readGood(file({bytes({0x5F, 0x13, 0, 0, 0, 0, 0, 0, 0, 2, 'a', 'b'})})), "ab"));
  EXPECT_TRUE(equal(readGood(file({bytes({0x42, 0, 1})})), Data{std::byte{0}, std::byte{1}}));
  EXPECT_TRUE(equal(readGood(file({bytes({0x50})})), ""));
}

TEST(PropertyListBinaryReader, RefusesBadStrings) {
  expectErrorAt(file({bytes({0x51, 0x80})}), 8);
  expectErrorAt(file({bytes({0x62, 0, 'a', 0xD8, 0x3D})}), 11);
  expectErrorAt(file({bytes({0x54, 'a', 'b'})}), 8);
  expectErrorAt(file({bytes({0x61, 'a'})}), 8);
  expectErrorAt(file({bytes({0x5F, 0x13, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF})}), 8);
  expectErrorAt(file({bytes({0x6F, 0x13, 0x80, 0, 0, 0, 0, 0, 0, 0})}), 8);
  expectErrorAt(file({bytes({0x5F})}), 8);
  expectErrorAt(file({bytes({0x5F, 0x14}) + std::string(16, '\0')}), 8);
  expectErrorAt(file({bytes({0x5F, 0x51, 'a'})}), 8);
}

TEST(PropertyListBinaryReader, RefusesObjectsThatPropertyListsDoNotHave) {
  for (const int marker : {0x00, 0x01, 0x0F, 0x70, 0x80, 0x90, 0xB0, 0xC0, 0xE0, 0xF0}) {
    expectErrorAt(file({bytes({marker, 0})}), 8);
  }
}

TEST(PropertyListBinaryReader, ReadsContainers) {
  const Value root =
      readGood(file({bytes({0xD2, 1, 2, 3, 4}), "\x51z", bytes({0x51, 'a'}), "\x09", bytes({0xA2, 3, 1})}));
  const Dictionary dictionary = root.asDictionary();
  EXPECT_EQ(dictionary.keys(), (std::vector<std::string>{"z", "a"}));
  EXPECT_TRUE(dictionary.boolFor("z"));
  EXPECT_EQ(dictionary.arrayFor("a").at(1).asString(), "z");
}

TEST(PropertyListBinaryReader, ReadsEverySizeOfOffsetsAndReferences) {
  for (std::size_t size = 1; size <= 8; ++size) {
    std::string array = bytes({0xA1});
    appendNumber(array, 1, size);
    const Value root = readGood(file({array, bytes({0x10, 9})}, size, size));
    EXPECT_EQ(root.asArray().at(0).asInt64(), 9) << size;
  }
}

TEST(PropertyListBinaryReader, MakesANewContainerForEachReference) {
  const Array root = readGood(file({bytes({0xA2, 1, 1}), bytes({0xA0})})).asArray();
  EXPECT_FALSE(root.at(0).asArray().sameAs(root.at(1).asArray()));
}

TEST(PropertyListBinaryReader, TakesTheLastOfTwoValuesOfAKey) {
  const Value root = readGood(file({bytes({0xD2, 1, 1, 2, 3}), "\x51k", bytes({0x10, 1}), bytes({0x10, 2})}));
  EXPECT_EQ(root.asDictionary().count(), 1U);
  EXPECT_EQ(root.asDictionary().int32For("k"), 2);
}

TEST(PropertyListBinaryReader, RefusesKeysThatAreNoStrings) {
  expectErrorAt(file({bytes({0xD1, 1, 1}), bytes({0x10, 1})}), 8);
}

TEST(PropertyListBinaryReader, RefusesReferencesToNothing) {
  const std::string contents = file({bytes({0xA1, 7})});
  expectErrorAt(contents, contents.size() - 32);
}

TEST(PropertyListBinaryReader, RefusesContainersThatHoldThemselves) {
  expectErrorAt(file({bytes({0xA1, 0})}), 8);
  expectErrorAt(file({bytes({0xA1, 1}), bytes({0xD1, 2, 0}), "\x51k"}), 8);
  expectErrorAt(file({bytes({0xD1, 0, 0})}), 8);
}

TEST(PropertyListBinaryReader, RefusesSmallFilesThatUnfoldToManyValues) {
  // Each array holds the next one ten times.
  std::vector<std::string> objects;
  for (int i = 1; i <= 7; ++i) {
    objects.push_back("\xAA" + std::string(10, static_cast<char>(i)));
  }
  objects.push_back("\x09");
  const Result<Value> result = readBinary(file(objects));
  ASSERT_FALSE(result.ok());
  EXPECT_EQ(result.error().message, "too many values");
  EXPECT_TRUE(result.error().offset.has_value());
}

TEST(PropertyListBinaryReader, RefusesManyReferencesToOneLongString) {
  constexpr std::size_t kLength = 60000;
  constexpr std::size_t kReferences = 60000;
  std::string array = bytes({0xAF, 0x11});
  appendNumber(array, kReferences, 2);
  array += std::string(kReferences, '\x01');
  std::string text = bytes({0x5F, 0x11});
  appendNumber(text, kLength, 2);
  text += std::string(kLength, 'x');
  EXPECT_FALSE(readBinary(file({array, text}, 4)).ok());
}

TEST(PropertyListBinaryReader, LimitsTheNesting) {
  const auto chain = [](std::size_t levels) {
    std::vector<std::string> objects;
    for (std::size_t i = 1; i < levels; ++i) {
      std::string array = bytes({0xA1});
      appendNumber(array, i, 2);
      objects.push_back(array);
    }
    objects.push_back(bytes({0xA0}));
    return file(objects, 4, 2);
  };
  EXPECT_TRUE(readBinary(chain(kMaximumNesting)).ok());
  expectErrorAt(chain(kMaximumNesting + 1), 8 + 3 * kMaximumNesting);
  EXPECT_FALSE(readBinary(chain(29'000)).ok());
}

TEST(PropertyListBinaryReader, RefusesBadTrailers) {
  const std::string head = "bplist00\x09";
  const auto with = [&head](const Trailer& fields) { return head + "\x08" + trailer(fields); };
  EXPECT_TRUE(readBinary(with({1, 1, 1, 0, 9})).ok());
  expectErrorAt(with({0, 1, 1, 0, 9}), 16);
  expectErrorAt(with({9, 1, 1, 0, 9}), 16);
  expectErrorAt(with({1, 0, 1, 0, 9}), 16);
  expectErrorAt(with({1, 1, 2, 0, 9}), 18);
  expectErrorAt(with({1, 1, ~std::uint64_t{0}, 0, 9}), 18);
  expectErrorAt(with({1, 1, 1, 0, 3}), 18);
  expectErrorAt(with({1, 1, 1, 0, ~std::uint64_t{0}}), 18);
  expectErrorAt(with({1, 1, 1, 1, 9}), 10);
  expectErrorAt(with({1, 1, 0, 0, 9}), 10);
}

TEST(PropertyListBinaryReader, RefusesOffsetsOutsideTheObjects) {
  for (const char offset : {'\0', '\x07', '\x09', '\xFF'}) {
    expectErrorAt(std::string("bplist00\x09") + offset + trailer({1, 1, 1, 0, 9}), 9);
  }
}

TEST(PropertyListBinaryReader, RefusesOtherVersionsAndStumps) {
  std::string other = file({"\x09"});
  other[7] = '1';
  expectErrorAt(other, 6);
  EXPECT_FALSE(readBinary("bplist").ok());
  EXPECT_FALSE(readBinary("bplist00").ok());
}

TEST(PropertyListBinaryReader, SurvivesEveryCutAndEveryFlippedByte) {
  const std::string whole =
      file({bytes({0xD2, 1, 2, 3, 4}), "\x51z", bytes({0x61, 0x20, 0xAC}), "\x09", bytes({0xA3, 3, 5, 6}),
            bytes({0x13, 1, 2, 3, 4, 5, 6, 7, 8}), bytes({0x42, 1, 2})});
  for (std::size_t length = 6; length < whole.size(); ++length) {
    EXPECT_FALSE(readBinary(whole.substr(0, length)).ok());
  }
  std::size_t refused = 0;
  for (std::size_t at = 6; at < whole.size(); ++at) {
    for (int value = 0; value < 256; ++value) {
      std::string broken = whole;
      broken[at] = static_cast<char>(value);
      const Result<Value> result = readBinary(broken);
      refused += result.ok() ? 0U : 1U;
      ASSERT_TRUE(result.ok() || *result.error().offset <= broken.size());
    }
  }
  EXPECT_GT(refused, 1000U);
}

}  // namespace
}  // namespace veltrix::plist
