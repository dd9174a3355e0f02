#include "settings/settings_sort.h"

#include <algorithm>

#include "settings/settings_keys.h"

namespace veltrix {
namespace {

bool isWildcard(const plist::Value& element) {
  const auto entry = element.asDictionary();
  return entry && entry.uint16For(keys::kVendorId) == 0 && entry.uint16For(keys::kProductId) == 0 &&
         entry.uint16For(keys::kDictVersion) == 0;
}

}  // namespace

// The order between two entries asks nothing but whether each is a wildcard, so there are only two groups: a
// partition says that without a comparison that a sort could find inconsistent, in linear time.
void sortWildcardEntriesFirst(plist::Array entries) {
  if (auto* items = entries.mutableItems()) {
    std::stable_partition(items->begin(), items->end(), isWildcard);
  }
}

}  // namespace veltrix
