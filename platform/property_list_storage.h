#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/property_list.h"

// What stands behind the container handles; for the sources of this service only.
namespace veltrix::plist {

// Storage that is freed one container at a time. Freeing a container drops the handles that it holds; a plain
// destructor would recurse once for each level of nesting, so those containers wait in a list instead.
struct Reclaimable {
  Reclaimable() = default;
  Reclaimable(const Reclaimable&) = delete;
  Reclaimable& operator=(const Reclaimable&) = delete;
  virtual ~Reclaimable() = default;

  static void reclaim(Reclaimable* storage) noexcept;  // the deleter; takes ownership

 private:
  Reclaimable* fNextWaiting = nullptr;
};

struct Array::Items : Reclaimable {
  std::vector<Value> values;
};

// Entries in order, with a hash index over them once there are more than a scan finds quickly. The index is
// open addressing over positions, so that adding an entry allocates nothing but its own room.
struct Dictionary::Table : Reclaimable {
  static constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

  std::vector<Entry> entries;

  std::size_t find(std::string_view key) const;
  void add(std::string_view key, Value value);  // the key must be new
  void removeAt(std::size_t position);
  void clear();

 private:
  void rebuildIndex(std::size_t slots);
  void enter(std::size_t position);
  std::size_t firstSlot(std::string_view key) const;

  std::vector<std::uint32_t> fSlots;  // position + 1, 0 when free; empty, or a power of two
};

}  // namespace veltrix::plist
