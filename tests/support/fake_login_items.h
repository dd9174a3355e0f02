#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/login_items.h"

namespace veltrix::testing {

// A list of login items in memory, in force as the user's list until the end of the scope.
class FakeLoginItems {
 public:
  struct Item {
    std::optional<std::string> name;
    std::optional<std::string> location;  // none when it does not resolve
    bool removable = true;
    bool absent = false;  // a hole in the snapshot

    friend bool operator==(const Item& a, const Item& b) {
      return a.name == b.name && a.location == b.location;
    }
  };

  FakeLoginItems() {
    setLoginItemsForTesting([this]() -> std::unique_ptr<LoginItemList> {
      ++opened;
      return opened <= opensUntilFailure ? std::make_unique<List>(this) : nullptr;
    });
  }
  ~FakeLoginItems() { setLoginItemsForTesting({}); }
  FakeLoginItems(const FakeLoginItems&) = delete;
  FakeLoginItems& operator=(const FakeLoginItems&) = delete;

  std::vector<Item> items;
  int opened = 0;
  int opensUntilFailure = 1000;
  bool snapshotFails = false;
  bool appendFails = false;
  int resolved = 0;   // how often an item was resolved
  int namesRead = 0;  // how often a display name was read

 private:
  class Entry : public LoginItem {
   public:
    Entry(FakeLoginItems* owner, Item item) : fOwner(owner), fItem(std::move(item)) {}
    std::optional<std::string> displayName() const override {
      ++fOwner->namesRead;
      return fItem.name;
    }
    std::optional<std::string> resolve() const override {
      ++fOwner->resolved;
      return fItem.location;
    }
    Status remove() override {
      const auto found = std::find(fOwner->items.begin(), fOwner->items.end(), fItem);
      if (!fItem.removable || found == fOwner->items.end()) {
        return Error{1, "not removable", {}};
      }
      fOwner->items.erase(found);
      return Done();
    }

   private:
    FakeLoginItems* fOwner;
    Item fItem;
  };

  class List : public LoginItemList {
   public:
    explicit List(FakeLoginItems* owner) : fOwner(owner) {}
    Result<std::vector<std::unique_ptr<LoginItem>>> snapshot() override {
      if (fOwner->snapshotFails) {
        return Error{1, "no snapshot", {}};
      }
      std::vector<std::unique_ptr<LoginItem>> entries;
      for (const Item& item : fOwner->items) {
        entries.push_back(item.absent ? nullptr : std::make_unique<Entry>(fOwner, item));
      }
      return entries;
    }
    Status append(const std::string& application) override {
      if (fOwner->appendFails) {
        return Error{1, "no room", {}};
      }
      fOwner->items.push_back({std::nullopt, application});
      return Done();
    }

   private:
    FakeLoginItems* fOwner;
  };
};

}  // namespace veltrix::testing
