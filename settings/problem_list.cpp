#include "settings/problem_list.h"

#include "settings/modifier_mask.h"
#include "settings/settings_schema.h"

namespace veltrix {
namespace {

using plist::Type;
using plist::Value;

// Readers take every number for every kind of number, so that writers need not agree on one.
bool mayStandFor(const Value& value, Type wanted) {
  const Type type = value.type();
  const bool isNumber = type == Type::kBoolean || type == Type::kInteger || type == Type::kReal;
  if (wanted == Type::kInteger && type == Type::kReal) {
    return value.asReal() == static_cast<double>(value.asInt64());
  }
  const bool wantsNumber = wanted == Type::kBoolean || wanted == Type::kInteger || wanted == Type::kReal;
  return type == wanted || (isNumber && wantsNumber);
}

}  // namespace

ProblemList ProblemList::at(std::string_view key) const {
  return {fProblems, fPlace.empty() ? std::string(key) : fPlace + "/" + std::string(key)};
}

void ProblemList::add(std::string reason) const {
  fProblems.push_back({fPlace, std::move(reason)});
}

void ProblemList::checkType(const plist::Dictionary& dictionary, const char* key) const {
  const plist::Value value = dictionary.get(key);
  const plist::Type wanted = settingsTypeOf(key);
  if (!value.isMissing() && !mayStandFor(value, wanted)) {
    at(key).add(std::string("is ") + typeName(value.type()) + " instead of " + typeName(wanted));
  }
}

void ProblemList::checkRange(const plist::Dictionary& dictionary, const char* key, std::int64_t least,
                             std::int64_t most) const {
  const plist::Value value = dictionary.get(key);
  checkType(dictionary, key);
  if (value.isMissing() || !mayStandFor(value, plist::Type::kInteger)) {
    return;
  }
  if (value.asInt64() < least || value.asInt64() > most) {
    at(key).add(std::to_string(value.asInt64()) + " is outside " + std::to_string(least) + " to " +
                std::to_string(most));
  }
}

void ProblemList::checkModifiers(const plist::Dictionary& dictionary, const char* key) const {
  const plist::Value value = dictionary.get(key);
  checkType(dictionary, key);
  if (mayStandFor(value, plist::Type::kInteger) && (value.asInt64() & ~std::int64_t{kAllModifiers}) != 0) {
    at(key).add(std::to_string(value.asInt64()) + " holds bits of no modifier key (all together are 7936)");
  }
}

}  // namespace veltrix
