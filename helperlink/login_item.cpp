#include "helperlink/login_item.h"

#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

#include "platform/application_folder.h"
#include "platform/letter_case.h"
#include "platform/login_items.h"
#include "util/path_text.h"

namespace veltrix {

namespace {

constexpr std::int32_t kFailed = -1;

// What happens to the items that match in one way.
struct Rule {
  bool removes;
  std::uint32_t* count;  // may be null

  // 0, or kFailed when the item could not be removed.
  std::int32_t apply(LoginItem& item) const {
    if (removes && !item.remove()) {
      return kFailed;
    }
    if (count != nullptr) {
      ++*count;
    }
    return 0;
  }
};

// The absolute path, as locations are compared; none when there is nothing to compare.
std::optional<std::string> locationOf(const std::optional<std::string>& path) {
  if (!path || path->empty()) {
    return {};
  }
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(*path, error);
  return error ? std::nullopt : std::optional(withoutFinalSlashes(absolute.string()));
}

// What an item can match, and what is done then.
struct Search {
  std::optional<std::string> location;
  std::optional<std::string> pathName;
  std::optional<std::string> name;
  Rule locationRule;
  Rule pathNameRule;
  Rule nameRule;

  std::int32_t visit(LoginItem& item) const {
    if (location) {
      const auto found = item.resolve();
      if (found && withoutFinalSlashes(*found) == *location) {
        return locationRule.apply(item);
      }
    }
    if (!pathName && !name) {
      return 0;
    }
    const auto displayName = item.displayName();
    if (displayName && pathName && equalIgnoringCase(*pathName, *displayName)) {
      return pathNameRule.apply(item);
    }
    if (displayName && name && equalIgnoringCase(*name, *displayName)) {
      return nameRule.apply(item);
    }
    return 0;
  }
};

}  // namespace

std::int32_t FindLoginItem(const std::optional<std::string>& path, bool removeByLocation,
                           std::uint32_t* locationCount, bool removeByPathName, std::uint32_t* pathNameCount,
                           const std::optional<std::string>& name, bool removeByName,
                           std::uint32_t* nameCount) {
  for (std::uint32_t* count : {locationCount, pathNameCount, nameCount}) {
    if (count != nullptr) {
      *count = 0;
    }
  }
  const Search search = {locationOf(path),
                         path ? std::optional(applicationName(*path)) : std::nullopt,
                         name ? std::optional(std::string(withoutApplicationSuffix(*name))) : std::nullopt,
                         {removeByLocation, locationCount},
                         {removeByPathName, pathNameCount},
                         {removeByName, nameCount}};
  const std::unique_ptr<LoginItemList> list = openLoginItems();
  if (list == nullptr) {
    return kFailed;
  }
  const auto items = list->snapshot();
  if (!items) {
    return kFailed;
  }
  std::int32_t status = 0;
  for (const std::unique_ptr<LoginItem>& item : items.value()) {
    if (item != nullptr && search.visit(*item) != 0) {
      status = kFailed;
    }
  }
  return status;
}

std::int32_t AddLoginItem(const std::string& path, const std::optional<std::string>& name) {
  std::uint32_t found = 0;
  const std::int32_t status = FindLoginItem(path, false, &found, true, nullptr, name, true, nullptr);
  if (found > 0) {
    return status;
  }
  const std::unique_ptr<LoginItemList> list = openLoginItems();
  const auto location = locationOf(path);
  if (list == nullptr || !location) {
    return status;
  }
  return list->append(*location) ? 0 : status;
}

std::int32_t RemoveLoginItem(const std::string& path, const std::optional<std::string>& name,
                             std::uint32_t* total) {
  std::uint32_t byLocation = 0;
  std::uint32_t byPathName = 0;
  std::uint32_t byName = 0;
  const std::int32_t status = FindLoginItem(path, true, &byLocation, true, &byPathName, name, true, &byName);
  if (total != nullptr) {
    *total = byLocation + byPathName + byName;
  }
  return status;
}

}  // namespace veltrix
