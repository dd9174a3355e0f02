#pragma once

#include <rapidcheck.h>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/property_list.h"
#include "platform/property_list_io.h"

// Generators of settings documents: full and sparse ones, with ids that collide, numbers at their limits,
// values of unexpected types, keys that nobody knows. What they yield shrinks, and shrinking makes new
// containers, so a property may change what it was given.
namespace veltrix::testing {

using Pairs = std::vector<std::pair<std::string, plist::Value>>;

// What an entry is made of, as plain values that can be copied.
struct EntrySketch {
  std::vector<int> ids;  // vendor, product, version bounds
  Pairs head;
  Pairs options;
  std::vector<std::pair<std::string, Pairs>> buttons;
  Pairs param;
  bool hasParam = false;
};

struct DocumentSketch {
  std::vector<EntrySketch> entries;
  Pairs head;
  std::vector<Pairs> snippets;
  bool hasSnippets = false;
};

inline plist::Dictionary dictionaryFrom(const Pairs& pairs) {
  auto dictionary = plist::Dictionary::create();
  for (const auto& [key, value] : pairs) {
    dictionary.set(key, value);
  }
  return dictionary;
}

inline plist::Dictionary entryFrom(const EntrySketch& sketch) {
  auto entry = plist::Dictionary::create();
  entry.set("dict version", 1);
  entry.set("driver enabled", true);
  entry.set("device vendor id", sketch.ids[0]);
  entry.set("device product id", sketch.ids[1]);
  entry.set("device version min", sketch.ids[2]);
  entry.set("device version max", sketch.ids[3]);
  for (const auto& [key, value] : sketch.head) {
    entry.set(key, value);
  }
  entry.set("options", dictionaryFrom(sketch.options));
  auto buttons = plist::Dictionary::create();
  for (const auto& [key, action] : sketch.buttons) {
    buttons.set(key, dictionaryFrom(action));
  }
  entry.set("buttons", buttons);
  if (sketch.hasParam) {
    entry.set("param", dictionaryFrom(sketch.param));
  }
  return entry;
}

inline plist::Dictionary documentFrom(const DocumentSketch& sketch) {
  auto document = plist::Dictionary::create();
  document.set("version", 2);
  auto devices = plist::Array::create();
  for (const auto& entry : sketch.entries) {
    devices.append(entryFrom(entry));
  }
  document.set("devices", devices);
  for (const auto& [key, value] : sketch.head) {
    document.set(key, value);
  }
  if (sketch.hasSnippets) {
    auto snippets = plist::Array::create();
    for (const auto& snippet : sketch.snippets) {
      snippets.append(dictionaryFrom(snippet));
    }
    document.set("snippets", snippets);
  }
  return document;
}

// How many pairs, buttons or snippets there are at most: enough for every key, few enough to be fast.
inline constexpr int kMostPairs = 15;
inline constexpr int kMostEntries = 10;

template <typename Container, typename Element>
rc::Gen<Container> atMost(int count, const rc::Gen<Element>& element) {
  return rc::gen::resize(count, rc::gen::container<Container>(element));
}

inline rc::Gen<plist::Value> arbitraryScalar() {
  using plist::Value;
  const std::vector<int> numbers = {
      79, 80, 400, 6400, 6401, 255, 256, 512, 0x1A00, 0x10001, 0x10107, -2147483647 - 1, 2147483647};
  const std::vector<std::string> texts = {
      "", "1", " -7x", "text", "Łódź <&> \"trackball\"", "a\nb\tc", "\xF0\x9F\x96\xB2"};
  const auto scalar = rc::gen::oneOf(
      rc::gen::map(rc::gen::inRange(-2, 300), [](int number) { return Value(number); }),
      rc::gen::map(rc::gen::elementOf(numbers), [](int number) { return Value(number); }),
      rc::gen::map(rc::gen::arbitrary<bool>(), [](bool state) { return Value(state); }),
      rc::gen::map(rc::gen::inRange(-100, 500), [](int hundredths) { return Value(hundredths / 100.0); }),
      rc::gen::map(rc::gen::elementOf(texts), [](const std::string& text) { return Value(text); }));
  // Numbers of any size, however small the containers around them.
  return rc::gen::resize(rc::kNominalSize, scalar);
}

// Some of `keys` with arbitrary scalars; a later pair of the same key wins.
inline rc::Gen<Pairs> arbitraryPairs(const std::vector<std::string>& keys) {
  return atMost<Pairs>(kMostPairs, rc::gen::pair(rc::gen::elementOf(keys), arbitraryScalar()));
}

inline rc::Gen<EntrySketch> arbitraryEntrySketch() {
  using rc::gen::set;
  const std::vector<int> ids = {0, 0, 1, 2, 0xA1D0, 0x2041, 0x0107, 0x10107, -1};
  const std::vector<std::string> heads = {"dict version", "driver enabled", "device product id", "unknown",
                                          "another unknown"};
  const std::vector<std::string> options = {
      "speed",    "accelerate",  "acceleration",    "jump",         "slow",     "slow keys",
      "single",   "single keys", "inertial scroll", "invert wheel", "invert x", "invert y",
      "invert z", "swap xy",     "unknown"};
  const std::vector<std::string> buttons = {"00", "01", "02", "03",  "08", "09", "12",
                                            "15", "16", "7",  "007", "-1", "x"};
  const std::vector<std::string> actions = {"cmd", "mod", "key", "cnt", "str", "bndl", "label", "unknown"};
  const std::vector<std::string> params = {"triggerTime", "timeDecay", "timeStop", "countDecay", "countStop"};
  return rc::gen::build<EntrySketch>(
      set(&EntrySketch::ids, rc::gen::container<std::vector<int>>(4, rc::gen::elementOf(ids))),
      set(&EntrySketch::head, arbitraryPairs(heads)), set(&EntrySketch::options, arbitraryPairs(options)),
      set(&EntrySketch::buttons,
          atMost<std::vector<std::pair<std::string, Pairs>>>(
              kMostPairs, rc::gen::pair(rc::gen::elementOf(buttons), arbitraryPairs(actions)))),
      set(&EntrySketch::param, arbitraryPairs(params)),
      set(&EntrySketch::hasParam, rc::gen::arbitrary<bool>()));
}

inline rc::Gen<plist::Dictionary> arbitraryEntry() {
  return rc::gen::map(arbitraryEntrySketch(), entryFrom);
}

// A document that the store accepts when it has an entry.
inline rc::Gen<plist::Dictionary> arbitraryDocument() {
  using rc::gen::set;
  const auto sketch = rc::gen::build<DocumentSketch>(
      set(&DocumentSketch::entries, atMost<std::vector<EntrySketch>>(kMostEntries, arbitraryEntrySketch())),
      set(&DocumentSketch::head, arbitraryPairs({"paramUI", "unknown", "support"})),
      set(&DocumentSketch::snippets,
          atMost<std::vector<Pairs>>(kMostPairs, arbitraryPairs({"name", "text", "unknown"}))),
      set(&DocumentSketch::hasSnippets, rc::gen::arbitrary<bool>()));
  return rc::gen::map(sketch, documentFrom);
}

}  // namespace veltrix::testing

namespace veltrix::plist {

// How a failed property prints the document that broke it.
inline void showValue(const Dictionary& dictionary, std::ostream& out) {
  const auto xml = writeXml(dictionary);
  out << (xml ? xml.value() : "(not writable)");
}

}  // namespace veltrix::plist
