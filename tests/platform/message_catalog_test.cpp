#include "platform/message_catalog.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/support/catalog_bytes.h"

namespace veltrix {
namespace {

using testing::catalogBytes;

TEST(MessageCatalog, IsReadInEitherByteOrder) {
  for (const bool swapped : {false, true}) {
    const auto catalog = MessageCatalog::read(catalogBytes({{"one", "eins"}, {"two", "zwei"}}, swapped));
    EXPECT_EQ(catalog.count(), 2U);
    EXPECT_EQ(catalog.find("one"), "eins");
    EXPECT_EQ(catalog.find("two"), "zwei");
    EXPECT_EQ(catalog.find("three"), std::nullopt);
    EXPECT_EQ(catalog.find(""), std::nullopt);
  }
}

TEST(MessageCatalog, OtherBytesHoldNoTexts) {
  for (const std::string& bytes : {std::string(), std::string("x"), std::string(100, '\xFF'),
                                   std::string(100, '\0'), catalogBytes({{"a", "b"}}).substr(0, 20)}) {
    EXPECT_EQ(MessageCatalog::read(bytes).count(), 0U);
  }
}

TEST(MessageCatalog, EntryOutsideOfTheBytesIsLeftOut) {
  const std::string bytes = catalogBytes({{"a", "first"}, {"b", "second"}});
  const auto catalog = MessageCatalog::read(bytes.substr(0, bytes.size() - 2));
  EXPECT_EQ(catalog.find("a"), "first");
  EXPECT_EQ(catalog.find("b"), std::nullopt);
}

RC_GTEST_PROP(MessageCatalog, DamagedBytesAreReadWithoutHarm, ()) {
  std::string bytes = catalogBytes({{"one", "eins"}, {"two", "zwei"}});
  const auto changes = *rc::gen::container<std::vector<std::pair<std::uint8_t, char>>>(
      rc::gen::pair(rc::gen::arbitrary<std::uint8_t>(), rc::gen::arbitrary<char>()));
  for (const auto& [place, byte] : changes) {
    bytes[4 + place % (bytes.size() - 4)] = byte;
  }
  const auto catalog = MessageCatalog::read(bytes);
  RC_ASSERT(catalog.count() <= bytes.size() / 8);
}

}  // namespace
}  // namespace veltrix
