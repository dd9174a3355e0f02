#include <functional>

#include "platform/property_list_storage.h"

namespace veltrix::plist {

namespace {

constexpr std::size_t kScannedEntries = 16;

// Plain pointers on purpose: they outlive every destructor of the thread, so values with static storage may
// still be freed after the thread's own objects.
thread_local Reclaimable* waiting = nullptr;
thread_local bool reclaiming = false;

const std::vector<Value>& noItems() {
  static const std::vector<Value> kNone;
  return kNone;
}

const std::vector<Entry>& noEntries() {
  static const std::vector<Entry> kNone;
  return kNone;
}

// The value under a key without a copy of it, a missing one when there is none.
const Value& valueAt(const Dictionary& dictionary, std::string_view key) {
  static const Value kMissing;
  const Value* value = dictionary.find(key);
  return value != nullptr ? *value : kMissing;
}

}  // namespace

void Reclaimable::reclaim(Reclaimable* storage) noexcept {
  storage->fNextWaiting = waiting;
  waiting = storage;
  if (reclaiming) {
    return;
  }
  reclaiming = true;
  while (waiting != nullptr) {
    const std::unique_ptr<Reclaimable> next(waiting);
    waiting = next->fNextWaiting;
  }
  reclaiming = false;
}

Array Array::create() {
  Array array;
  array.fItems = std::shared_ptr<Items>(new Items, Reclaimable::reclaim);
  return array;
}

std::size_t Array::count() const {
  return fItems ? fItems->values.size() : 0;
}

Value Array::at(std::size_t index) const {
  return index < count() ? fItems->values[index] : Value();
}

void Array::append(Value value) {
  if (fItems && !value.isMissing()) {
    fItems->values.push_back(std::move(value));
  }
}

void Array::replace(std::size_t index, Value value) {
  if (index < count() && !value.isMissing()) {
    std::swap(fItems->values[index], value);
  }
}

void Array::remove(std::size_t index) {
  if (index < count()) {
    fItems->values.erase(fItems->values.begin() + static_cast<std::ptrdiff_t>(index));
  }
}

const std::vector<Value>& Array::items() const {
  return fItems ? fItems->values : noItems();
}

std::vector<Value>* Array::mutableItems() {
  return fItems ? &fItems->values : nullptr;
}

std::size_t Dictionary::Table::firstSlot(std::string_view key) const {
  return std::hash<std::string_view>{}(key) & (fSlots.size() - 1);
}

std::size_t Dictionary::Table::find(std::string_view key) const {
  if (fSlots.empty()) {
    for (std::size_t position = 0; position < entries.size(); ++position) {
      if (entries[position].key == key) {
        return position;
      }
    }
    return kNotFound;
  }
  for (std::size_t slot = firstSlot(key); fSlots[slot] != 0; slot = (slot + 1) & (fSlots.size() - 1)) {
    if (entries[fSlots[slot] - 1].key == key) {
      return fSlots[slot] - 1;
    }
  }
  return kNotFound;
}

void Dictionary::Table::enter(std::size_t position) {
  std::size_t slot = firstSlot(entries[position].key);
  while (fSlots[slot] != 0) {
    slot = (slot + 1) & (fSlots.size() - 1);
  }
  fSlots[slot] = static_cast<std::uint32_t>(position + 1);
}

void Dictionary::Table::rebuildIndex(std::size_t slots) {
  fSlots.assign(slots, 0);
  for (std::size_t position = 0; position < entries.size(); ++position) {
    enter(position);
  }
}

void Dictionary::Table::add(std::string_view key, Value value) {
  entries.push_back({std::string(key), std::move(value)});
  if (entries.size() <= kScannedEntries) {
    return;
  }
  if (entries.size() * 2 > fSlots.size()) {
    rebuildIndex(fSlots.empty() ? kScannedEntries * 4 : fSlots.size() * 2);
  } else {
    enter(entries.size() - 1);
  }
}

void Dictionary::Table::removeAt(std::size_t position) {
  entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(position));
  if (!fSlots.empty()) {
    rebuildIndex(fSlots.size());
  }
}

void Dictionary::Table::clear() {
  fSlots.clear();
  // What the entries hold may lead back to this table, so they go only when it is empty.
  const std::vector<Entry> old = std::exchange(entries, {});
}

Dictionary Dictionary::create() {
  Dictionary dictionary;
  dictionary.fTable = std::shared_ptr<Table>(new Table, Reclaimable::reclaim);
  return dictionary;
}

std::size_t Dictionary::count() const {
  return fTable ? fTable->entries.size() : 0;
}

const std::vector<Entry>& Dictionary::entries() const {
  return fTable ? fTable->entries : noEntries();
}

std::vector<std::string> Dictionary::keys() const {
  std::vector<std::string> keys;
  keys.reserve(count());
  for (const Entry& entry : entries()) {
    keys.push_back(entry.key);
  }
  return keys;
}

bool Dictionary::contains(std::string_view key) const {
  return fTable && fTable->find(key) != Table::kNotFound;
}

Value Dictionary::get(std::string_view key) const {
  const Value* value = find(key);
  return value == nullptr ? Value() : *value;
}

const Value* Dictionary::find(std::string_view key) const {
  const std::size_t position = fTable ? fTable->find(key) : Table::kNotFound;
  return position == Table::kNotFound ? nullptr : &fTable->entries[position].value;
}

void Dictionary::set(std::string_view key, Value value) {
  if (!fTable) {
    return;
  }
  if (value.isMissing()) {
    remove(key);
    return;
  }
  const std::size_t position = fTable->find(key);
  if (position == Table::kNotFound) {
    fTable->add(key, std::move(value));
  } else {
    std::swap(fTable->entries[position].value, value);
  }
}

void Dictionary::remove(std::string_view key) {
  const std::size_t position = fTable ? fTable->find(key) : Table::kNotFound;
  if (position != Table::kNotFound) {
    fTable->removeAt(position);
  }
}

void Dictionary::clear() {
  if (fTable) {
    fTable->clear();
  }
}

bool Dictionary::boolFor(std::string_view key) const {
  return valueAt(*this, key).asBool();
}
std::int32_t Dictionary::int32For(std::string_view key) const {
  return valueAt(*this, key).asInt32();
}
std::uint32_t Dictionary::uint32For(std::string_view key) const {
  return valueAt(*this, key).asUint32();
}
std::uint16_t Dictionary::uint16For(std::string_view key) const {
  return static_cast<std::uint16_t>(valueAt(*this, key).asUint32());
}
double Dictionary::realFor(std::string_view key) const {
  return valueAt(*this, key).asReal();
}
std::string Dictionary::stringFor(std::string_view key) const {
  return valueAt(*this, key).asString();
}
Dictionary Dictionary::dictionaryFor(std::string_view key) const {
  return valueAt(*this, key).asDictionary();
}
Array Dictionary::arrayFor(std::string_view key) const {
  return valueAt(*this, key).asArray();
}

}  // namespace veltrix::plist
