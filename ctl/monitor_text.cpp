#include "ctl/monitor_text.h"

#include <algorithm>

namespace veltrix::ctl {
namespace {

constexpr std::uint16_t kFirstChord = 8;
constexpr std::uint16_t kLastChord = 9;
constexpr std::uint16_t kWheel = 12;

constexpr std::size_t kSlotWidth = 9;
constexpr std::size_t kStateWidth = 8;

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

}  // namespace

std::string slotText(std::uint16_t slot) {
  if (slot == kWheel)
    return "wheel";
  return (slot >= kFirstChord && slot <= kLastChord ? "chord " : "button ") + std::to_string(slot);
}

std::string monitorLine(const ButtonUse& use, const std::string& title) {
  return deviceIdsText(use.device) + " #" + std::to_string(use.number) + "  " +
         padded(slotText(use.slot), kSlotWidth) + "  " +
         padded(use.pressed ? "pressed" : "released", kStateWidth) + "  " + title +
         (use.byHelper ? " (by the helper)" : "") + "\n";
}

std::string monitorJsonLine(const ButtonUse& use, const std::string& title) {
  const Json json = {{"number", use.number},
                     {"vendor", use.device.vendor},
                     {"product", use.device.product},
                     {"version", use.device.version},
                     {"slot", use.slot},
                     {"command", use.command},
                     {"title", title},
                     {"pressed", use.pressed},
                     {"by", use.byHelper ? "helper" : "driver"}};
  return json.dump() + "\n";
}

}  // namespace veltrix::ctl
