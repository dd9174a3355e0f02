#pragma once

#include <cstdint>
#include <span>

namespace veltrix {

inline constexpr std::int32_t kEditItemTag = -1;   // opens the editor
inline constexpr std::int32_t kExtraItemTag = -2;  // shows an action that no other item shows

// One item of the menu from which every button's menu is made.
struct TemplateItem {
  std::int32_t tag;   // a command code or kEditItemTag
  const char* title;  // an English key; null for a separator, whose tag has no meaning
};

// The commands that people use most, in groups, and the edit item.
std::span<const TemplateItem> templateMenu();

}  // namespace veltrix
