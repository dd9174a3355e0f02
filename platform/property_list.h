#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

// Property-list values in memory. Dictionaries and arrays are handles with reference semantics: copying a
// handle gives a second name for the same container. A null handle reads as missing and swallows writes, so
// that callers test for presence only where a rule speaks of it. Nesting of any depth is freed without
// recursion; a container that holds itself is never freed unless somebody takes it apart.
namespace veltrix::plist {

class Value;
struct Entry;

using Data = std::vector<std::byte>;

// A moment in seconds since 2001-01-01 00:00:00 UTC; any finite number.
struct Date {
  double seconds = 0;
  friend bool operator==(const Date&, const Date&) = default;
};

// An ordered sequence of values; a handle.
class Array {
 public:
  Array() = default;      // null
  static Array create();  // a new, empty array
  bool isNull() const { return fItems == nullptr; }
  explicit operator bool() const { return !isNull(); }
  bool sameAs(const Array& other) const { return fItems == other.fItems; }

  std::size_t count() const;                     // 0 when null
  Value at(std::size_t index) const;             // missing when out of range
  void append(Value value);                      // nothing when missing
  void replace(std::size_t index, Value value);  // nothing when out of range or missing
  void remove(std::size_t index);                // nothing when out of range
  const std::vector<Value>& items() const;       // empty when null; valid until the next write
  std::vector<Value>* mutableItems();            // null when null; for sorting in place

 private:
  struct Items;
  std::shared_ptr<Items> fItems;
};

// Values under string keys, in the order in which the keys were first set; a handle. Look-up, set and append
// are O(1) on average, remove is O(n).
class Dictionary {
 public:
  Dictionary() = default;      // null
  static Dictionary create();  // a new, empty dictionary
  bool isNull() const { return fTable == nullptr; }
  explicit operator bool() const { return !isNull(); }
  bool sameAs(const Dictionary& other) const { return fTable == other.fTable; }

  std::size_t count() const;                      // 0 when null
  std::vector<std::string> keys() const;          // in order
  const std::vector<Entry>& entries() const;      // in order; empty when null; valid until the next write
  bool contains(std::string_view key) const;      // also true for a value of an unexpected type
  Value get(std::string_view key) const;          // missing when there is no such key
  const Value* find(std::string_view key) const;  // the same without a copy; null when there is none
  void set(std::string_view key, Value value);    // a missing value removes the key
  void remove(std::string_view key);
  void clear();

  // Lenient readers, see Value; a missing key reads as 0, false or empty.
  bool boolFor(std::string_view key) const;
  std::int32_t int32For(std::string_view key) const;
  std::uint32_t uint32For(std::string_view key) const;
  std::uint16_t uint16For(std::string_view key) const;  // the low 16 bits
  double realFor(std::string_view key) const;
  std::string stringFor(std::string_view key) const;     // empty for anything but a string
  Dictionary dictionaryFor(std::string_view key) const;  // null for anything but a dictionary
  Array arrayFor(std::string_view key) const;            // null for anything but an array

 private:
  struct Table;
  std::shared_ptr<Table> fTable;
};

enum class Type { kMissing, kBoolean, kInteger, kReal, kString, kData, kDate, kArray, kDictionary };

// One node of a property list. Scalars are held by value, containers by handle.
class Value {
 public:
  Value() = default;              // missing
  Value(bool value);              // NOLINT(google-explicit-constructor)
  Value(double value);            // NOLINT(google-explicit-constructor)
  Value(std::string value);       // NOLINT(google-explicit-constructor)  UTF-8
  Value(std::string_view value);  // NOLINT(google-explicit-constructor)
  Value(const char* value);       // NOLINT(google-explicit-constructor)
  Value(Data value);              // NOLINT(google-explicit-constructor)
  Value(Date value);              // NOLINT(google-explicit-constructor)
  Value(Array value);             // NOLINT(google-explicit-constructor)  a null handle is missing
  Value(Dictionary value);        // NOLINT(google-explicit-constructor)  a null handle is missing
  template <typename I>
  requires(std::is_integral_v<I> && !std::is_same_v<I, bool> && !std::is_same_v<I, char>) Value(I value)
      : fState(static_cast<std::int64_t>(value)) {}  // NOLINT(google-explicit-constructor)

  Value(const Value& other);
  Value(Value&& other) noexcept;  // leaves the other with the same type and unspecified contents
  Value& operator=(const Value& other);
  Value& operator=(Value&& other) noexcept;
  ~Value();

  Type type() const;
  bool isMissing() const { return type() == Type::kMissing; }

  // Lenient readers. A string reads as its leading integer (blanks, sign, digits; 0 without digits); a real
  // truncates toward zero and saturates at 64 bits, not-a-number and infinity read as the integer 0 and as
  // true; booleans are 0 and 1; data, dates, containers and missing values read as 0 and false.
  std::int64_t asInt64() const;
  std::int32_t asInt32() const;    // the low 32 bits of asInt64
  std::uint32_t asUint32() const;  // the low 32 bits of asInt64
  bool asBool() const;             // any non-zero number is true
  double asReal() const;
  std::string asString() const;  // empty for anything but a string
  Data asData() const;           // empty for anything but data
  const std::string* stringIf() const { return std::get_if<std::string>(&fState); }  // null for another type
  const Data* dataIf() const { return std::get_if<Data>(&fState); }                  // null for another type
  Date asDate() const;              // zero for anything but a date
  Array asArray() const;            // null for anything but an array
  Dictionary asDictionary() const;  // null for anything but a dictionary

 private:
  std::variant<std::monostate, bool, std::int64_t, double, std::string, Data, Date, Array, Dictionary> fState;
};

// One key of a dictionary with its value.
struct Entry {
  std::string key;
  Value value;
};

// Same type and same contents throughout; the order of dictionary keys does not matter, not-a-number equals
// itself. Containers that hold themselves compare too.
bool equal(const Value& a, const Value& b);

}  // namespace veltrix::plist
