#include "helper/desktop/printed_setting.h"

#include <algorithm>

namespace veltrix {

bool PrintedSetting::take(std::string_view word) {
  fRest.remove_prefix(std::min(fRest.find_first_not_of(" \n"), fRest.size()));
  const bool isThere = fRest.starts_with(word);
  fRest.remove_prefix(isThere ? word.size() : 0);
  return isThere;
}

// A backslash keeps the character after it from being the end.
std::optional<std::string> PrintedSetting::takeText() {
  const bool isSingle = take("'");
  if (!isSingle && !take("\"")) {
    return {};
  }
  std::string text;
  for (std::size_t at = 0; at < fRest.size(); ++at) {
    if (fRest[at] == (isSingle ? '\'' : '"')) {
      fRest.remove_prefix(at + 1);
      return text;
    }
    at += fRest[at] == '\\' && at + 1 < fRest.size() ? 1 : 0;
    text += fRest[at];
  }
  return {};
}

bool PrintedSetting::isAtEnd() {
  return take("") && fRest.empty();
}

}  // namespace veltrix
