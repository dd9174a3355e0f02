#include "fuzz/spoiled_list.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "settings/deep_copy.h"

using veltrix::plist::Array;
using veltrix::plist::Dictionary;
using veltrix::plist::Value;

namespace {

constexpr std::size_t kDeepest = 12;   // how far down a change may be
constexpr std::size_t kNesting = 400;  // a file holds a little more
constexpr std::size_t kLongText = 70000;
constexpr std::size_t kMostElements = 400;

constexpr std::array kKeys = {"version",
                              "devices",
                              "snippets",
                              "paramUI",
                              "support",
                              "dict version",
                              "device vendor id",
                              "device product id",
                              "device version min",
                              "device version max",
                              "driver enabled",
                              "options",
                              "buttons",
                              "param",
                              "speed",
                              "accelerate",
                              "acceleration",
                              "jump",
                              "slow",
                              "slow keys",
                              "single",
                              "single keys",
                              "inertial scroll",
                              "invert wheel",
                              "cmd",
                              "label",
                              "mod",
                              "key",
                              "cnt",
                              "str",
                              "bndl",
                              "triggerTime",
                              "timeDecay",
                              "timeStop",
                              "countDecay",
                              "countStop",
                              "name",
                              "text",
                              "category",
                              "category106",
                              "commands",
                              "command",
                              "name106",
                              "00",
                              "01",
                              "02",
                              "03",
                              "08",
                              "09",
                              "12",
                              "15",
                              ""};

constexpr std::array<std::int64_t, 18> kIntegers = {0,
                                                    1,
                                                    -1,
                                                    -2,
                                                    255,
                                                    256,
                                                    32767,
                                                    32768,
                                                    65535,
                                                    65536,
                                                    std::numeric_limits<std::int32_t>::max(),
                                                    std::numeric_limits<std::int32_t>::min(),
                                                    std::numeric_limits<std::uint32_t>::max(),
                                                    std::int64_t{1} << 32U,
                                                    std::numeric_limits<std::int64_t>::max(),
                                                    std::numeric_limits<std::int64_t>::min(),
                                                    0xA1D0,
                                                    0x2041};

constexpr std::array kReals = {0.0,
                               -0.0,
                               0.5,
                               -1.0,
                               1e308,
                               -1e308,
                               5e-324,
                               1e18,
                               std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()};

constexpr std::array kSeconds = {0.0, -1.0, 1e9, -6.3e10,
                                 1e18};  // whole ones; the last only binary files carry

// Two arguments of a text, markup, line ends of every kind, a turned direction, characters beyond the first
// plane and those that XML cannot carry, an address without an end, a path without a name. All of it is
// UTF-8, because no file brings anything else.
const std::array<std::string, 15> kTexts = {"",
                                            "%1 %2 %n %s",
                                            "<qt><img src=\"file:///dev/zero\"><b>",
                                            "&amp;&&lt;",
                                            "a\r\nb\u2028c\u2029d",
                                            std::string("a\0b", 3),
                                            "\u202E\u0301\u0301\u200B",
                                            "\U0001F5B2\U0010FFFF\uFFFE",
                                            "http://",
                                            "//",
                                            "/dev/zero",
                                            "x7y1z",
                                            "Snippet 99999999999",
                                            " -99999999999999999999",
                                            "\t\x01\x1B[2J"};

Value nested(std::size_t depth, bool dictionaries) {
  Value inner = dictionaries ? Value(Dictionary::create()) : Value(Array::create());
  for (std::size_t i = 0; i < depth; ++i) {
    if (dictionaries) {
      auto outer = Dictionary::create();
      outer.set(kKeys[i % kKeys.size()], inner);
      inner = outer;
    } else {
      auto outer = Array::create();
      outer.append(inner);
      inner = outer;
    }
  }
  return inner;
}

Value hostileText(ByteSource* bytes) {
  switch (bytes->below(4)) {
    case 0:
      return std::string(kLongText, static_cast<char>(bytes->byte() & 0x7FU));
    case 1: {
      std::string text(bytes->take(bytes->byte()));
      std::replace_if(
          text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0x80U) != 0; }, '?');
      return text;
    }
    default:
      return kTexts[bytes->below(kTexts.size())];
  }
}

Value hostileContainer(ByteSource* bytes) {
  switch (bytes->below(6)) {
    case 0:
      return Dictionary::create();
    case 1:
      return Array::create();
    case 2:
      return nested(bytes->below(16), (bytes->byte() & 1U) != 0);
    case 3:
      return nested(kNesting, (bytes->byte() & 1U) != 0);
    default: {
      auto array = Array::create();
      const Value element = bytes->below(2) == 0 ? Value(Dictionary::create()) : Value(kTexts[1]);
      for (std::size_t i = 0; i < kMostElements; ++i) {
        array.append(element);
      }
      return array;
    }
  }
}

std::string hostileKey(const Dictionary& dictionary, ByteSource* bytes) {
  const std::size_t choice = bytes->below(8);
  if (choice == 0) {
    return kTexts[bytes->below(kTexts.size())];
  }
  if (choice < 5 && dictionary.count() > 0) {
    return dictionary.keys()[bytes->below(dictionary.count())];
  }
  return kKeys[bytes->below(kKeys.size())];
}

void spoilDictionary(Dictionary dictionary, ByteSource* bytes) {
  const std::string key = hostileKey(dictionary, bytes);
  switch (bytes->below(8)) {
    case 0:
      return dictionary.remove(key);
    case 1:
      return dictionary.set(hostileKey(dictionary, bytes), dictionary.get(key));
    default:
      return dictionary.set(key, hostileValue(bytes));
  }
}

void spoilArray(Array array, ByteSource* bytes) {
  const std::size_t index = bytes->below(array.count());
  switch (bytes->below(4)) {
    case 0:
      return array.remove(index);
    case 1:
      return array.append(veltrix::plist::Value(array.at(index)));
    case 2:
      return array.append(hostileValue(bytes));
    default:
      return array.replace(index, hostileValue(bytes));
  }
}

// A container inside of this one, if the bytes choose one.
Value chooseChild(const Value& container, ByteSource* bytes) {
  const auto array = container.asArray();
  const auto dictionary = container.asDictionary();
  const std::size_t choice = bytes->byte();
  if (array && array.count() > 0) {
    return array.at(choice % array.count());
  }
  if (dictionary && dictionary.count() > 0) {
    return dictionary.entries()[choice % dictionary.count()].value;
  }
  return {};
}

}  // namespace

Value hostileValue(ByteSource* bytes) {
  switch (bytes->below(12)) {
    case 0:
    case 1:
      return kIntegers[bytes->below(kIntegers.size())];
    case 2:
    case 3:
      return bytes->word();
    case 4:
      return -static_cast<int>(bytes->word());
    case 5:
      return kReals[bytes->below(kReals.size())];
    case 6:
    case 7:
      return hostileText(bytes);
    case 8:
      return (bytes->byte() & 1U) != 0;
    case 9:
      return veltrix::plist::Data(bytes->byte());
    case 10:
      return veltrix::plist::Date{kSeconds[bytes->below(kSeconds.size())]};
    default:
      return hostileContainer(bytes);
  }
}

void spoil(const Value& root, ByteSource* bytes) {
  Value place = root;
  for (std::size_t depth = 0; depth < kDeepest && bytes->below(5) != 0; ++depth) {
    const Value child = chooseChild(place, bytes);
    if (!child.asArray() && !child.asDictionary()) {
      break;
    }
    place = child;
  }
  if (place.asArray()) {
    spoilArray(place.asArray(), bytes);
  } else {
    spoilDictionary(place.asDictionary(), bytes);
  }
}
