#include "actions/action_kind.h"

namespace veltrix {

ActionKind actionKind(std::int32_t command) {
  const auto code = static_cast<std::uint16_t>(command);
  if (isClickCommand(code)) {
    return ActionKind::kClick;
  }
  if (isScrollCommand(code)) {
    return ActionKind::kScroll;
  }
  if (code >= kFirstSnippetCommand && code <= kLastSnippetCommand) {
    return ActionKind::kSnippet;
  }
  switch (code) {
    case kKeystrokeCommand:
      return ActionKind::kKeystroke;
    case kOpenItemCommand:
      return ActionKind::kItem;
    case kLaunchApplicationCommand:
      return ActionKind::kApplication;
    case kOpenUrlCommand:
      return ActionKind::kUrl;
    case kRunScriptCommand:
      return ActionKind::kScript;
    default:
      return ActionKind::kPlain;
  }
}

}  // namespace veltrix
