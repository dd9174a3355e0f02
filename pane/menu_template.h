#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <vector>

namespace veltrix {

class AssignmentMenu;

// The items that every menu of a button begins with, in the user's language.
class MenuTemplate {
 public:
  // `localize` gives the text of an English key (UTF-8).
  explicit MenuTemplate(const std::function<QString(const char*)>& localize);

  // Appends the items to a menu, which gets its own because it may gain an item later; the edit item carries
  // the number of the button.
  void copyTo(AssignmentMenu* menu, std::int32_t button) const;

 private:
  struct Item {
    std::int32_t tag;
    QString title;
    bool isSeparator;
  };

  std::vector<Item> fItems;
};

}  // namespace veltrix
