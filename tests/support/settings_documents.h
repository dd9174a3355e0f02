#pragma once

#include <cstdint>
#include <initializer_list>
#include <utility>

#include "platform/property_list.h"

// Small settings documents for tests, said in one line each.
namespace veltrix::testing {

inline plist::Dictionary dictionaryOf(
    std::initializer_list<std::pair<const char*, plist::Value>> contents = {}) {
  auto dictionary = plist::Dictionary::create();
  for (const auto& [key, value] : contents) {
    dictionary.set(key, value);
  }
  return dictionary;
}

inline plist::Array arrayOf(std::initializer_list<plist::Value> contents = {}) {
  auto array = plist::Array::create();
  for (const auto& value : contents) {
    array.append(value);
  }
  return array;
}

// A valid entry with empty options and no buttons.
inline plist::Dictionary entryOf(std::int64_t vendor, std::int64_t product, std::int64_t versionMin = 0,
                                 std::int64_t versionMax = 0) {
  return dictionaryOf({{"dict version", 1},
                       {"driver enabled", true},
                       {"device vendor id", vendor},
                       {"device product id", product},
                       {"device version min", versionMin},
                       {"device version max", versionMax},
                       {"options", dictionaryOf()},
                       {"buttons", dictionaryOf()}});
}

inline plist::Dictionary actionOf(int command) {
  return dictionaryOf({{"cmd", command}});
}
inline plist::Dictionary clickOf(int command, int modifiers) {
  return dictionaryOf({{"cmd", command}, {"mod", modifiers}});
}

// A document that the store accepts when it has an entry.
inline plist::Dictionary documentOf(std::initializer_list<plist::Value> entries) {
  return dictionaryOf({{"version", 2}, {"devices", arrayOf(entries)}});
}

}  // namespace veltrix::testing
