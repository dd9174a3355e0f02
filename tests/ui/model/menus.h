#pragma once

#include <string>
#include <vector>

#include "tests/ui/model/catalogue.h"

namespace veltrix::model {

inline constexpr int kEditItem = -1;
inline constexpr int kExtraItem = -2;

// What the menu of a button shows.
struct Menu {
  int tag = 0;
  std::string title;  // of the extra item
  bool enabled = true;
};

bool isPlainClick(const Json& action);
bool anyPlainClick(const Json& entry, int first, int excluded);  // among the buttons first to 3

// Shows the action of a button in its menu, whose template has items of those tags. Gives button 0 the click
// back when no button has it.
Menu showMenu(Json& entry, int button, const std::vector<int>& tags, const Catalogue& catalogue,
              const Json& snippets);

// Makes the action what the selected item stands for.
void takeMenu(Json& action, int tag);

}  // namespace veltrix::model
