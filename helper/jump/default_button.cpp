#include "helper/jump/default_button.h"

#include <deque>

namespace veltrix {

std::unique_ptr<AccessiblePart> findDefaultButton(AccessiblePart& dialog, const SearchLimits& limits,
                                                  const std::function<bool()>& timeIsUp) {
  struct Group {
    AccessiblePart* part;
    std::unique_ptr<AccessiblePart> owned;  // nothing for the dialog itself
    int depth;
  };
  std::deque<Group> groups;
  groups.push_back({&dialog, nullptr, 0});
  int seen = 0;
  while (!groups.empty() && !timeIsUp()) {
    const Group group = std::move(groups.front());
    groups.pop_front();
    const int count = group.part->partCount();
    for (int i = 0; i < count; ++i) {
      if (++seen > limits.parts || timeIsUp())
        return nullptr;
      std::unique_ptr<AccessiblePart> part = group.part->part(i);
      if (part == nullptr)
        continue;
      const AccessiblePart::Kind kind = part->kind();
      if (kind == AccessiblePart::Kind::kButton && part->isUsableDefault())
        return part;
      if (kind == AccessiblePart::Kind::kGroup && group.depth + 1 < limits.depth) {
        AccessiblePart* const plain = part.get();
        groups.push_back({plain, std::move(part), group.depth + 1});
      }
    }
  }
  return nullptr;
}

}  // namespace veltrix
