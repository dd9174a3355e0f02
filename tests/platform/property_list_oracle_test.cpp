#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "platform/property_list_io.h"
#include "tests/support/property_list_generator.h"
#include "tests/support/temporary_folder.h"

// Both writers and both readers against two programs that others wrote. Left out is what those lose: plistlib
// writes carriage returns as line feeds, plistutil 2.2 writes them bare, which reads as line feeds;
// plistutil 2.2 writes years before 1000 without leading zeros.
namespace veltrix::plist {
namespace {

using veltrix::testing::PropertyListGenerator;
using veltrix::testing::TemporaryFolder;

constexpr std::size_t kFiles = 40;
constexpr std::size_t kDocumentsPerFile = 100;

void appendHex(std::string& out, const void* data, std::size_t size) {
  constexpr char kDigits[] = "0123456789abcdef";
  const auto* bytes = static_cast<const unsigned char*>(data);
  for (std::size_t i = 0; i < size; ++i) {
    out.push_back(kDigits[bytes[i] >> 4U]);
    out.push_back(kDigits[bytes[i] & 0x0FU]);
  }
}

std::string scalarLine(const Value& value) {
  std::string line;
  switch (value.type()) {
    case Type::kBoolean:
      return value.asBool() ? "b1" : "b0";
    case Type::kInteger:
      return "i" + std::to_string(value.asInt64());
    case Type::kReal: {
      char digits[24];
      std::snprintf(digits, sizeof digits, "r%016llx",
                    static_cast<unsigned long long>(std::bit_cast<std::uint64_t>(value.asReal())));
      return std::isnan(value.asReal()) ? "rnan" : digits;
    }
    case Type::kString:
      line = "s";
      appendHex(line, value.stringIf()->data(), value.stringIf()->size());
      return line;
    case Type::kData:
      line = "d";
      appendHex(line, value.dataIf()->data(), value.dataIf()->size());
      return line;
    default:
      return "t" + std::to_string(static_cast<long long>(value.asDate().seconds));
  }
}

// One value a line, as the script describes them too.
void describe(const Value& value, std::vector<std::string>& lines) {
  if (value.type() == Type::kArray) {
    lines.push_back("a" + std::to_string(value.asArray().count()));
    for (const Value& item : value.asArray().items()) {
      describe(item, lines);
    }
  } else if (value.type() == Type::kDictionary) {
    lines.push_back("m" + std::to_string(value.asDictionary().count()));
    for (const Entry& entry : value.asDictionary().entries()) {
      describe(entry.key, lines);
      describe(entry.value, lines);
    }
  } else {
    lines.push_back(scalarLine(value));
  }
}

void writeDescription(const std::string& path, const Value& value) {
  std::vector<std::string> lines;
  describe(value, lines);
  std::ofstream file(path);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    file << (i == 0 ? "" : "\n") << lines[i];
  }
}

class PropertyListOracle : public ::testing::Test {
 protected:
  // Fills the folder with NAME.xml and NAME.bin for each array of documents.
  void generate(bool earlyDates) {
    PropertyListGenerator generator(20240229, {.carriageReturns = false, .earlyDates = earlyDates});
    for (std::size_t i = 0; i < kFiles; ++i) {
      Array documents = Array::create();
      for (std::size_t k = 0; k < kDocumentsPerFile; ++k) {
        documents.append(generator.document());
      }
      fDocuments.emplace_back(documents);
      const Result<std::string> xml = writeXml(documents);
      const Result<std::string> binary = writeBinary(documents);
      ASSERT_TRUE(xml.ok() && binary.ok());
      std::ofstream(path(i, ".xml"), std::ios::binary) << xml.value();
      std::ofstream(path(i, ".bin"), std::ios::binary) << binary.value();
    }
  }

  std::string path(std::size_t number, const std::string& suffix) const {
    return fFolder / (std::to_string(number) + suffix);
  }

  void expectSame(std::size_t number, const std::string& suffix) const {
    const Result<Document> result = readFile(path(number, suffix));
    ASSERT_TRUE(result.ok()) << number << suffix << ": " << result.error().message;
    EXPECT_TRUE(equal(result.value().root, fDocuments[number])) << number << suffix;
  }

  TemporaryFolder fFolder;
  std::vector<Value> fDocuments;
};

TEST_F(PropertyListOracle, PlistlibReadsAndWritesTheSame) {
  generate(true);
  for (std::size_t i = 0; i < kFiles; ++i) {
    writeDescription(path(i, ".txt"), fDocuments[i]);
  }
  const std::string command = std::string(VELTRIX_PYTHON " " VELTRIX_ORACLE_SCRIPT " ") + fFolder.path();
  ASSERT_EQ(std::system(command.c_str()), 0);
  for (std::size_t i = 0; i < kFiles; ++i) {
    expectSame(i, ".oracle.xml");
    expectSame(i, ".oracle.bin");
  }
}

TEST_F(PropertyListOracle, PlistutilReadsAndWritesTheSame) {
  generate(false);
  for (std::size_t i = 0; i < kFiles; ++i) {
    const std::string toBinary = "plistutil -f bin -i " + path(i, ".xml") + " -o " + path(i, ".oracle.bin");
    const std::string toXml = "plistutil -f xml -i " + path(i, ".bin") + " -o " + path(i, ".oracle.xml");
    ASSERT_EQ(std::system(toBinary.c_str()), 0);
    ASSERT_EQ(std::system(toXml.c_str()), 0);
    expectSame(i, ".oracle.bin");
    expectSame(i, ".oracle.xml");
  }
}

}  // namespace
}  // namespace veltrix::plist
