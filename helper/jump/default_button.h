#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "helper/jump/jump_decision.h"

namespace veltrix {

// A part of a window as its program describes it. Every question goes to that program, which may be slow.
class AccessiblePart {
 public:
  enum class Kind {
    kButton,
    kGroup,  // may hold buttons
    kOther,  // texts, tables and the like: no button of the dialog is looked for in them
  };
  virtual ~AccessiblePart() = default;
  virtual Kind kind() = 0;
  // Pressed by Return, shown and not greyed out.
  virtual bool isUsableDefault() = 0;
  virtual int partCount() = 0;
  // Null when it has gone.
  virtual std::unique_ptr<AccessiblePart> part(int index) = 0;
  virtual std::optional<ScreenArea> place() = 0;
};

struct SearchLimits {
  int parts = 2000;
  int depth = 30;
};

// The default button of the dialog and null when it has none, or none was found within the limits or before
// `timeIsUp`, which is asked between any two questions to the program. Buttons near the top are found first.
std::unique_ptr<AccessiblePart> findDefaultButton(AccessiblePart& dialog, const SearchLimits& limits,
                                                  const std::function<bool()>& timeIsUp);

}  // namespace veltrix
