#include "platform/property_list.h"

#include <cmath>
#include <functional>
#include <limits>
#include <unordered_set>
#include <utility>

namespace veltrix::plist {

namespace {

bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// The integer that a text starts with; values beyond 64 bits saturate.
std::int64_t leadingInteger(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && isBlank(text[at])) {
    ++at;
  }
  const bool negative = at < text.size() && text[at] == '-';
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
    ++at;
  }
  // Counted below zero, where there is room for one value more.
  std::int64_t value = 0;
  constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    const int digit = text[at] - '0';
    if (value < (kLowest + digit) / 10) {
      value = kLowest;
      break;
    }
    value = value * 10 - digit;
  }
  if (negative) {
    return value;
  }
  return value == kLowest ? std::numeric_limits<std::int64_t>::max() : -value;
}

std::int64_t truncated(double real) {
  if (!std::isfinite(real)) {
    return 0;
  }
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  if (real >= kLimit) {
    return std::numeric_limits<std::int64_t>::max();
  }
  if (real < -kLimit) {
    return std::numeric_limits<std::int64_t>::min();
  }
  return static_cast<std::int64_t>(real);
}

}  // namespace

Value::Value(bool value) : fState(value) {}
Value::Value(double value) : fState(value) {}
Value::Value(std::string value) : fState(std::move(value)) {}
Value::Value(std::string_view value) : fState(std::string(value)) {}
Value::Value(const char* value) : fState(std::string(value)) {}
Value::Value(Data value) : fState(std::move(value)) {}
Value::Value(Date value) : fState(value) {}
Value::Value(Array value) {
  if (value) {
    fState = std::move(value);
  }
}
Value::Value(Dictionary value) {
  if (value) {
    fState = std::move(value);
  }
}

// Defined here and not in every caller: the destructor of such a variant is large.
Value::Value(const Value& other) = default;
Value::Value(Value&& other) noexcept = default;
Value& Value::operator=(const Value& other) = default;
Value& Value::operator=(Value&& other) noexcept = default;
Value::~Value() = default;

Type Value::type() const {
  return static_cast<Type>(fState.index());
}

std::int64_t Value::asInt64() const {
  switch (type()) {
    case Type::kBoolean:
      return std::get<bool>(fState) ? 1 : 0;
    case Type::kInteger:
      return std::get<std::int64_t>(fState);
    case Type::kReal:
      return truncated(std::get<double>(fState));
    case Type::kString:
      return leadingInteger(std::get<std::string>(fState));
    default:
      return 0;
  }
}

std::int32_t Value::asInt32() const {
  return static_cast<std::int32_t>(asInt64());
}
std::uint32_t Value::asUint32() const {
  return static_cast<std::uint32_t>(asInt64());
}

bool Value::asBool() const {
  const double* real = std::get_if<double>(&fState);
  return real != nullptr ? *real != 0.0 : asInt64() != 0;
}

double Value::asReal() const {
  const double* real = std::get_if<double>(&fState);
  return real != nullptr ? *real : static_cast<double>(asInt64());
}

std::string Value::asString() const {
  const std::string* text = stringIf();
  return text != nullptr ? *text : std::string();
}

Data Value::asData() const {
  const Data* data = dataIf();
  return data != nullptr ? *data : Data();
}

Date Value::asDate() const {
  const Date* date = std::get_if<Date>(&fState);
  return date != nullptr ? *date : Date();
}

Array Value::asArray() const {
  const Array* array = std::get_if<Array>(&fState);
  return array != nullptr ? *array : Array();
}

Dictionary Value::asDictionary() const {
  const Dictionary* dictionary = std::get_if<Dictionary>(&fState);
  return dictionary != nullptr ? *dictionary : Dictionary();
}

namespace {

using ContainerPair = std::pair<const void*, const void*>;

struct ContainerPairHash {
  std::size_t operator()(const ContainerPair& pair) const {
    const std::hash<const void*> hash;
    return hash(pair.first) * 31 + hash(pair.second);
  }
};

// Compares without recursion. A pair of containers that was met before counts as equal: if it is not, the
// first meeting finds that out. So containers that hold themselves, or many times the same one, come to an
// end.
class Comparison {
 public:
  bool run(const Value& a, const Value& b) {
    fPending.emplace_back(&a, &b);
    while (!fPending.empty()) {
      const auto [left, right] = fPending.back();
      fPending.pop_back();
      if (!step(*left, *right)) {
        return false;
      }
    }
    return true;
  }

 private:
  bool step(const Value& a, const Value& b) {
    if (a.type() != b.type()) {
      return false;
    }
    switch (a.type()) {
      case Type::kMissing:
        return true;
      case Type::kBoolean:
        return a.asBool() == b.asBool();
      case Type::kInteger:
        return a.asInt64() == b.asInt64();
      case Type::kReal:
        return a.asReal() == b.asReal() || (std::isnan(a.asReal()) && std::isnan(b.asReal()));
      case Type::kString:
        return *a.stringIf() == *b.stringIf();
      case Type::kData:
        return *a.dataIf() == *b.dataIf();
      case Type::kDate:
        return a.asDate() == b.asDate();
      case Type::kArray:
        return arrays(a.asArray(), b.asArray());
      case Type::kDictionary:
        return dictionaries(a.asDictionary(), b.asDictionary());
    }
    return false;
  }

  bool arrays(const Array& a, const Array& b) {
    const std::vector<Value>& left = a.items();
    const std::vector<Value>& right = b.items();
    if (left.size() != right.size()) {
      return false;
    }
    if (!a.sameAs(b) && fMet.emplace(&left, &right).second) {
      for (std::size_t i = 0; i < left.size(); ++i) {
        fPending.emplace_back(&left[i], &right[i]);
      }
    }
    return true;
  }

  bool dictionaries(const Dictionary& a, const Dictionary& b) {
    if (a.count() != b.count()) {
      return false;
    }
    if (a.sameAs(b) || !fMet.emplace(&a.entries(), &b.entries()).second) {
      return true;
    }
    for (const Entry& entry : a.entries()) {
      const Value* other = b.find(entry.key);
      if (other == nullptr) {
        return false;
      }
      fPending.emplace_back(&entry.value, other);
    }
    return true;
  }

  std::vector<std::pair<const Value*, const Value*>> fPending;
  std::unordered_set<ContainerPair, ContainerPairHash> fMet;
};

}  // namespace

bool equal(const Value& a, const Value& b) {
  return Comparison().run(a, b);
}

}  // namespace veltrix::plist
