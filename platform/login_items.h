#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "util/result.h"

namespace veltrix {

// An application that starts with the user's session.
class LoginItem {
 public:
  virtual ~LoginItem() = default;

  virtual std::optional<std::string> displayName() const = 0;  // UTF-8; none when it has none

  // The absolute path of its application folder; none when that is not there.
  virtual std::optional<std::string> resolve() const = 0;

  // Takes it from the list. The item stays usable, but a second removal fails.
  virtual Status remove() = 0;
};

// The user's list of such applications.
class LoginItemList {
 public:
  virtual ~LoginItemList() = default;

  // What the list holds at this moment, in an order that lasts. Elements may be null.
  virtual Result<std::vector<std::unique_ptr<LoginItem>>> snapshot() = 0;

  // Adds the application folder at this absolute path.
  virtual Status append(const std::string& application) = 0;
};

// Opens the user's list; null when that is not possible.
std::unique_ptr<LoginItemList> openLoginItems();

// The list of the entries "*.desktop" in a folder, in the order of their file names. An entry that the user
// has switched off (Hidden, X-GNOME-Autostart-enabled) is an item like any other, so that nothing adds it
// again against the user's will.
std::unique_ptr<LoginItemList> openAutostartFolder(const std::string& folder);

// Replaces openLoginItems for the whole process; an empty function restores it.
void setLoginItemsForTesting(std::function<std::unique_ptr<LoginItemList>()> open);

}  // namespace veltrix
