#include <gtest/gtest.h>

#include <string>

#include "platform/property_list_io.h"

// What holds for every form in which property lists are written.
namespace veltrix::plist {
namespace {

struct Form {
  const char* name;
  Result<std::string> (*write)(const Value& root);
};

class PropertyListWriters : public ::testing::TestWithParam<Form> {
 protected:
  static Result<std::string> write(const Value& root) { return GetParam().write(root); }
};

INSTANTIATE_TEST_SUITE_P(Forms, PropertyListWriters,
                         ::testing::Values(Form{"Xml", writeXml}, Form{"Binary", writeBinary}),
                         [](const auto& form) { return form.param.name; });

Value nestedArrays(std::size_t levels) {
  Value value = Array::create();
  for (std::size_t i = 1; i < levels; ++i) {
    Array array = Array::create();
    array.append(value);
    value = array;
  }
  return value;
}

Value nestedDictionaries(std::size_t levels) {
  Value value = Dictionary::create();
  for (std::size_t i = 1; i < levels; ++i) {
    Dictionary outer = Dictionary::create();
    outer.set("in", value);
    value = outer;
  }
  return value;
}

TEST_P(PropertyListWriters, WriteWhatCanBeReadAndNoDeeper) {
  for (Value (*const nested)(std::size_t) : {nestedArrays, nestedDictionaries}) {
    const Result<std::string> deepest = write(nested(kMaximumNesting));
    ASSERT_TRUE(deepest.ok());
    EXPECT_TRUE(read(deepest.value()).ok());
    EXPECT_FALSE(write(nested(kMaximumNesting + 1)).ok());
  }
}

TEST_P(PropertyListWriters, SurviveContainersThatHoldThemselves) {
  Dictionary root = Dictionary::create();
  root.set("a", root);
  root.set("b", root);
  EXPECT_FALSE(write(root).ok());
  root.clear();
  Array array = Array::create();
  array.append(array);
  array.append(array);
  EXPECT_FALSE(write(array).ok());
  array.mutableItems()->clear();
}

TEST_P(PropertyListWriters, LimitWhatSharedContainersUnfoldTo) {
  Value value("core");
  for (int i = 0; i < 40; ++i) {
    Array pair = Array::create();
    pair.append(value);
    pair.append(value);
    value = pair;
  }
  EXPECT_FALSE(write(value).ok());
}

TEST_P(PropertyListWriters, RefuseToWriteWhatIsTooLargeToRead) {
  EXPECT_TRUE(write(std::string(kMaximumFileBytes - 1000, 'x')).ok());
  EXPECT_FALSE(write(std::string(kMaximumFileBytes, 'x')).ok());
}

}  // namespace
}  // namespace veltrix::plist
