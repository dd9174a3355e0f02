#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace veltrix {

// A value as gsettings prints it, read from its beginning on. The text must outlive it.
class PrintedSetting {
 public:
  explicit PrintedSetting(std::string_view text) : fRest(text) {}

  // Whether that comes next; it is behind then. Spaces before it do not matter.
  bool take(std::string_view word);

  // A text in quotes of either kind; nothing when none comes next.
  std::optional<std::string> takeText();

  // What remains is worth nothing.
  bool isAtEnd();

 private:
  std::string_view fRest;
};

}  // namespace veltrix
