#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace veltrix {

// Walks the applications that start with the user's session. An item matches by location, or else by display
// name against the last component of `path` or against `name` (both without a final ".app", letter case
// ignored). For each kind of match a flag says whether matching items are removed, and an optional counter
// receives how many matched, or were removed. 0, or -1 when the list could not be opened or an item could not
// be removed; one failed removal does not stop the walk.
std::int32_t FindLoginItem(const std::optional<std::string>& path, bool removeByLocation,
                           std::uint32_t* locationCount, bool removeByPathName, std::uint32_t* pathNameCount,
                           const std::optional<std::string>& name, bool removeByName,
                           std::uint32_t* nameCount);

// Makes sure that `path` starts with the session, once; entries of the same name that lead elsewhere are
// removed.
std::int32_t AddLoginItem(const std::string& path, const std::optional<std::string>& name);

// Removes every match of any kind; `total` (may be null) receives how many were removed.
std::int32_t RemoveLoginItem(const std::string& path, const std::optional<std::string>& name,
                             std::uint32_t* total);

}  // namespace veltrix
