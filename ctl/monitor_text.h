#pragma once

#include <cstdint>
#include <string>

#include "ctl/hex_ids.h"
#include "ctl/plist_json.h"

namespace veltrix::ctl {

// What the helper tells of one use of a button.
struct ButtonUse {
  std::uint32_t number = 0;  // of this one trackball, since the driver began
  DeviceIds device;
  std::uint16_t slot = 0;
  std::uint16_t command = 0;
  bool pressed = false;
  bool byHelper = false;  // the helper carries it out, not the driver
};

// "button 3", "chord 8" or "wheel".
std::string slotText(std::uint16_t slot);

// One line each, the final newline with it; `title` is the command's.
std::string monitorLine(const ButtonUse& use, const std::string& title);
std::string monitorJsonLine(const ButtonUse& use, const std::string& title);

}  // namespace veltrix::ctl
