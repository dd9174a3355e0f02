#include "ctl/document_changes.h"

#include <algorithm>

namespace veltrix::ctl {
namespace {

using plist::Type;
using plist::Value;

// Whether the contents of both are compared rather than the values themselves: containers of one kind, or one
// with something in it that is new or gone.
bool holdsPlaces(const Value& one, const Value& other, Type type) {
  const auto isEmpty = [](const Value& value) {
    return value.asDictionary().count() == 0 && value.asArray().count() == 0;
  };
  const auto fits = [type](const Value& value) { return value.type() == type || value.isMissing(); };
  return fits(one) && fits(other) && !(isEmpty(one) && isEmpty(other));
}

class Comparison {
 public:
  std::vector<DocumentChange> changes;

  // Nesting is limited wherever a document comes from.
  void compare(const std::string& place, const Value& before, const Value& after) {
    if (plist::equal(before, after)) {
      return;
    }
    if (holdsPlaces(before, after, Type::kDictionary)) {
      compareKeys(place, before.asDictionary(), after.asDictionary());
    } else if (holdsPlaces(before, after, Type::kArray)) {
      compareElements(place, before.asArray(), after.asArray());
    } else {
      changes.push_back({place, before, after});
    }
  }

 private:
  void compareKeys(const std::string& place, const plist::Dictionary& before,
                   const plist::Dictionary& after) {
    for (const auto& key : before.keys()) {
      compare(below(place, key), before.get(key), after.get(key));
    }
    for (const auto& key : after.keys()) {
      if (!before.contains(key)) {
        compare(below(place, key), {}, after.get(key));
      }
    }
  }

  void compareElements(const std::string& place, const plist::Array& before, const plist::Array& after) {
    for (std::size_t i = 0; i < std::max(before.count(), after.count()); ++i) {
      compare(below(place, std::to_string(i)), before.at(i), after.at(i));
    }
  }

  static std::string below(const std::string& place, const std::string& key) {
    return place.empty() ? key : place + "/" + key;
  }
};

}  // namespace

std::vector<DocumentChange> changesBetween(const Value& before, const Value& after) {
  Comparison comparison;
  comparison.compare({}, before, after);
  return comparison.changes;
}

}  // namespace veltrix::ctl
