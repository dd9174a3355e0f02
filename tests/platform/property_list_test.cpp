#include "platform/property_list.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace veltrix::plist {
namespace {

using ::testing::ElementsAre;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

TEST(PropertyListValue, KnowsItsType) {
  EXPECT_EQ(Value().type(), Type::kMissing);
  EXPECT_EQ(Value(true).type(), Type::kBoolean);
  EXPECT_EQ(Value(1).type(), Type::kInteger);
  EXPECT_EQ(Value(std::uint16_t{1}).type(), Type::kInteger);
  EXPECT_EQ(Value(1.0).type(), Type::kReal);
  EXPECT_EQ(Value("text").type(), Type::kString);
  EXPECT_EQ(Value(Data{}).type(), Type::kData);
  EXPECT_EQ(Value(Date{}).type(), Type::kDate);
  EXPECT_EQ(Value(Array::create()).type(), Type::kArray);
  EXPECT_EQ(Value(Dictionary::create()).type(), Type::kDictionary);
}

TEST(PropertyListValue, OfANullHandleIsMissing) {
  EXPECT_TRUE(Value(Array()).isMissing());
  EXPECT_TRUE(Value(Dictionary()).isMissing());
}

TEST(PropertyListValue, StringReadsAsItsLeadingInteger) {
  EXPECT_EQ(Value("42").asInt64(), 42);
  EXPECT_EQ(Value(" \t\n-7 apples").asInt64(), -7);
  EXPECT_EQ(Value("+5").asInt64(), 5);
  EXPECT_EQ(Value("1.9").asInt64(), 1);
  EXPECT_EQ(Value("1.9").asReal(), 1.0);
  EXPECT_EQ(Value("0x10").asInt64(), 0);
  EXPECT_EQ(Value("- 5").asInt64(), 0);
  EXPECT_EQ(Value("apples").asInt64(), 0);
  EXPECT_EQ(Value("").asInt64(), 0);
  EXPECT_EQ(Value("-").asInt64(), 0);
  EXPECT_FALSE(Value("true").asBool());
  EXPECT_TRUE(Value("1").asBool());
}

TEST(PropertyListValue, StringBeyond64BitsSaturates) {
  EXPECT_EQ(Value("9223372036854775807").asInt64(), kHighest);
  EXPECT_EQ(Value("9223372036854775808").asInt64(), kHighest);
  EXPECT_EQ(Value("99999999999999999999999999").asInt64(), kHighest);
  EXPECT_EQ(Value("-9223372036854775807").asInt64(), kLowest + 1);
  EXPECT_EQ(Value("-9223372036854775808").asInt64(), kLowest);
  EXPECT_EQ(Value("-9223372036854775809").asInt64(), kLowest);
}

TEST(PropertyListValue, RealTruncatesTowardZeroAndSaturates) {
  EXPECT_EQ(Value(2.9).asInt64(), 2);
  EXPECT_EQ(Value(-2.9).asInt64(), -2);
  EXPECT_EQ(Value(1e300).asInt64(), kHighest);
  EXPECT_EQ(Value(-1e300).asInt64(), kLowest);
  EXPECT_EQ(Value(9223372036854775808.0).asInt64(), kHighest);
  EXPECT_EQ(Value(-9223372036854775808.0).asInt64(), kLowest);
}

TEST(PropertyListValue, NotANumberAndInfinityReadAsZeroAndTrue) {
  for (const double odd : {std::nan(""), kInfinity, -kInfinity}) {
    EXPECT_EQ(Value(odd).asInt64(), 0);
    EXPECT_EQ(Value(odd).asInt32(), 0);
    EXPECT_TRUE(Value(odd).asBool());
  }
}

TEST(PropertyListValue, AnyRealButZeroIsTrue) {
  EXPECT_TRUE(Value(0.1).asBool());
  EXPECT_TRUE(Value(-5e-324).asBool());
  EXPECT_FALSE(Value(0.0).asBool());
  EXPECT_FALSE(Value(-0.0).asBool());
}

TEST(PropertyListValue, KeepsTheLowBitsOfLongIntegers) {
  EXPECT_EQ(Value(0x1'2345'6789).asInt32(), 0x2345'6789);
  EXPECT_EQ(Value(0xFFFF'FFFFLL).asInt32(), -1);
  EXPECT_EQ(Value(-1).asUint32(), 0xFFFF'FFFFU);
  EXPECT_TRUE(Value(0x1'0000'0000).asBool());
  Dictionary holder = Dictionary::create();
  holder.set("n", 0x1'0005);
  EXPECT_EQ(holder.uint16For("n"), 5);
}

TEST(PropertyListValue, OtherTypesReadAsZeroAndFalseAndEmpty) {
  for (const Value& value : {Value(), Value(Data{std::byte{1}}), Value(Date{5}), Value(Array::create()),
                             Value(Dictionary::create())}) {
    EXPECT_EQ(value.asInt64(), 0);
    EXPECT_EQ(value.asReal(), 0.0);
    EXPECT_FALSE(value.asBool());
    EXPECT_EQ(value.asString(), "");
  }
  EXPECT_TRUE(Value("text").asArray().isNull());
  EXPECT_TRUE(Value(Array::create()).asDictionary().isNull());
  EXPECT_TRUE(Value("text").asData().empty());
  EXPECT_EQ(Value(5).asDate(), Date{});
  EXPECT_EQ(Value(5).asString(), "");
}

TEST(PropertyListValue, BooleansAreZeroAndOne) {
  EXPECT_EQ(Value(true).asInt64(), 1);
  EXPECT_EQ(Value(true).asReal(), 1.0);
  EXPECT_EQ(Value(false).asInt64(), 0);
}

TEST(PropertyListArray, IsAHandle) {
  Array one = Array::create();
  Array other = one;
  other.append(5);
  EXPECT_EQ(one.count(), 1U);
  EXPECT_TRUE(one.sameAs(other));
  EXPECT_FALSE(one.sameAs(Array::create()));
}

TEST(PropertyListArray, NullSwallowsWritesAndReadsAsEmpty) {
  Array null;
  null.append(1);
  null.replace(0, 1);
  null.remove(0);
  EXPECT_EQ(null.count(), 0U);
  EXPECT_TRUE(null.at(0).isMissing());
  EXPECT_TRUE(null.items().empty());
  EXPECT_EQ(null.mutableItems(), nullptr);
}

TEST(PropertyListArray, EditsItsItems) {
  Array array = Array::create();
  array.append("a");
  array.append("b");
  array.append("c");
  array.append(Value());
  array.replace(1, "B");
  array.replace(3, "D");
  array.remove(0);
  array.remove(7);
  ASSERT_EQ(array.count(), 2U);
  EXPECT_EQ(array.at(0).asString(), "B");
  EXPECT_EQ(array.at(1).asString(), "c");
  EXPECT_TRUE(array.at(2).isMissing());
}

TEST(PropertyListDictionary, KeepsTheOrderInWhichKeysCame) {
  Dictionary dictionary = Dictionary::create();
  dictionary.set("zebra", 1);
  dictionary.set("ant", 2);
  dictionary.set("mouse", 3);
  dictionary.set("zebra", 4);
  EXPECT_THAT(dictionary.keys(), ElementsAre("zebra", "ant", "mouse"));
  EXPECT_EQ(dictionary.int32For("zebra"), 4);
  dictionary.remove("ant");
  dictionary.set("ant", 5);
  EXPECT_THAT(dictionary.keys(), ElementsAre("zebra", "mouse", "ant"));
}

TEST(PropertyListDictionary, MissingValueRemovesTheKey) {
  Dictionary dictionary = Dictionary::create();
  dictionary.set("a", 1);
  dictionary.set("a", Value());
  EXPECT_FALSE(dictionary.contains("a"));
  EXPECT_EQ(dictionary.count(), 0U);
}

TEST(PropertyListDictionary, NullSwallowsWritesAndReadsAsMissing) {
  Dictionary null;
  null.set("a", 1);
  null.remove("a");
  null.clear();
  EXPECT_EQ(null.count(), 0U);
  EXPECT_FALSE(null.contains("a"));
  EXPECT_EQ(null.int32For("a"), 0);
  EXPECT_TRUE(null.dictionaryFor("a").isNull());
  EXPECT_TRUE(null.arrayFor("a").isNull());
  EXPECT_EQ(null.stringFor("a"), "");
}

TEST(PropertyListDictionary, FindsEveryKeyOfManyAfterRemovals) {
  constexpr int kKeys = 1000;
  Dictionary dictionary = Dictionary::create();
  for (int i = 0; i < kKeys; ++i) {
    dictionary.set("key" + std::to_string(i), i);
  }
  for (int i = 0; i < kKeys; i += 3) {
    dictionary.remove("key" + std::to_string(i));
  }
  for (int i = 0; i < kKeys; ++i) {
    const Value* found = dictionary.find("key" + std::to_string(i));
    ASSERT_EQ(found != nullptr, i % 3 != 0) << i;
    EXPECT_TRUE(found == nullptr || found->asInt64() == i);
  }
  dictionary.clear();
  EXPECT_FALSE(dictionary.contains("key1"));
  dictionary.set("key1", 1);
  EXPECT_EQ(dictionary.count(), 1U);
}

TEST(PropertyListDictionary, ContainsAKeyOfAnUnexpectedType) {
  Dictionary dictionary = Dictionary::create();
  dictionary.set("options", "not a dictionary");
  EXPECT_TRUE(dictionary.contains("options"));
  EXPECT_TRUE(dictionary.dictionaryFor("options").isNull());
}

Value nested(int levels) {
  Value value("core");
  for (int i = 0; i < levels; ++i) {
    if (i % 2 == 0) {
      Array array = Array::create();
      array.append(value);
      value = array;
    } else {
      Dictionary dictionary = Dictionary::create();
      dictionary.set("k", value);
      value = dictionary;
    }
  }
  return value;
}

TEST(PropertyListMemory, FreesAndComparesAMillionLevels) {
  constexpr int kLevels = 1'000'000;
  const Value one = nested(kLevels);
  const Value other = nested(kLevels);
  EXPECT_TRUE(equal(one, other));
  EXPECT_FALSE(equal(one, nested(kLevels - 2)));
}

TEST(PropertyListMemory, DictionaryThatHoldsItselfCanBeTakenApart) {
  Dictionary dictionary = Dictionary::create();
  dictionary.set("self", dictionary);
  dictionary.set("other", 1);
  EXPECT_TRUE(dictionary.dictionaryFor("self").sameAs(dictionary));
  dictionary.clear();
  EXPECT_EQ(dictionary.count(), 0U);
}

TEST(PropertyListEqual, IgnoresTheOrderOfKeys) {
  Dictionary one = Dictionary::create();
  one.set("a", 1);
  one.set("b", 2);
  Dictionary other = Dictionary::create();
  other.set("b", 2);
  other.set("a", 1);
  EXPECT_TRUE(equal(one, other));
  other.set("c", 3);
  EXPECT_FALSE(equal(one, other));
  one.set("d", 3);
  EXPECT_FALSE(equal(one, other));
}

TEST(PropertyListEqual, TellsTypesApart) {
  EXPECT_FALSE(equal(1, true));
  EXPECT_FALSE(equal(1, 1.0));
  EXPECT_FALSE(equal("1", 1));
  EXPECT_TRUE(equal(Value(), Value()));
  EXPECT_TRUE(equal(Value(std::nan("")), Value(std::nan(""))));
  EXPECT_FALSE(equal(Value(Date{1}), Value(Date{2})));
  EXPECT_FALSE(equal(Value(Data{std::byte{1}}), Value(Data{})));
}

TEST(PropertyListEqual, ComparesContainersThatHoldThemselves) {
  Array one = Array::create();
  one.append(one);
  Array other = Array::create();
  other.append(other);
  EXPECT_TRUE(equal(one, other));
  other.append(1);
  EXPECT_FALSE(equal(one, other));
  one.mutableItems()->clear();
  other.mutableItems()->clear();
}

TEST(PropertyListEqual, ComparesWhatIsSharedManyTimesOnce) {
  Value one("core");
  Value other("core");
  for (int i = 0; i < 100; ++i) {
    for (Value* value : {&one, &other}) {
      Array pair = Array::create();
      pair.append(*value);
      pair.append(*value);
      *value = pair;
    }
  }
  EXPECT_TRUE(equal(one, other));
}

}  // namespace
}  // namespace veltrix::plist
