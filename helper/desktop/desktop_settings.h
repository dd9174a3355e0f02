#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "helper/commands/attempt.h"
#include "helper/desktop/program_starter.h"

namespace veltrix {

// Changes the switches and numbers of the desktop that gsettings keeps, one after the other.
class DesktopSettings {
 public:
  // gsettings counts as failed when it has not ended after `grace`. `starter` must outlive the object.
  DesktopSettings(ProgramStarter& starter, std::chrono::microseconds grace);
  ~DesktopSettings();
  DesktopSettings(const DesktopSettings&) = delete;
  DesktopSettings& operator=(const DesktopSettings&) = delete;

  void change(const SettingAttempt& attempt, ProgramStarter::Exit ended);

 private:
  struct State;
  std::shared_ptr<State> fState;
};

// The value that follows the one that gsettings has printed: a boolean turned over for the step 0, else a
// number moved by the step, within the bounds of the attempt. Nothing when the text is not such a value.
std::optional<std::string> nextSettingValue(std::string_view printed, const SettingAttempt& attempt);

}  // namespace veltrix
