#include "pane/driver_text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "pane/device_report.h"

namespace veltrix {
namespace {

struct Words {
  std::string_view code;
  const char* key;
};

constexpr std::array kStateWords = {
    Words{"unused", "The trackballs are simulated ones, which need no driver."},
    Words{"no-outputs",
          "The driver runs, but the system does not let it make the pointer and the keyboard that it needs."},
    Words{
        "not-installed",
        "The driver is not installed on this computer. It comes with Veltrix: install Veltrix again, or ask "
        "whoever looks after this computer."},
    Words{
        "not-running",
        "The driver is installed, but does not run. The system starts it by itself; if this does not change, "
        "restart the computer."},
    Words{"other-user",
          "The driver serves whoever is at the screen, and that is not this session now. It comes back with "
          "it."},
    Words{"replaced",
          "The driver works for another session of yours. It comes back when you turn to this one again."},
    Words{"incompatible",
          "Driver and helper are of different versions and do not understand each other. Install Veltrix "
          "again, then log out and in."},
};

constexpr std::array kConditionWords = {
    Words{"taken", "works by your settings"},
    Words{"waiting", "works by your settings as soon as its buttons are up"},
    Words{"left-alone", "is an ordinary mouse"},
    Words{"busy", "another program has taken it; the driver tries again"},
};

template <std::size_t size>
const char* keyFor(const std::array<Words, size>& table, std::string_view code) {
  const auto found =
      std::find_if(table.begin(), table.end(), [&](const Words& words) { return words.code == code; });
  return found != table.end() ? found->key : nullptr;
}

std::string filled(std::string text, const std::string& value) {
  const std::size_t place = text.find("%1");
  return place == std::string::npos ? text : text.replace(place, 2, value);
}

bool isAtWork(const std::optional<DriverStatus>& status) {
  return status && status->helperRuns && status->state == "connected";
}

// Nobody has told, or not what can be understood.
bool isUnknown(const std::optional<DriverStatus>& status) {
  return !status || (status->helperRuns && status->state != "connected" && status->state != "unreachable" &&
                     keyFor(kStateWords, status->state) == nullptr);
}

bool isInTrouble(const DriverStatusDevice& device) {
  return device.condition == "busy" || device.condition == "failed";
}

}  // namespace

std::string driverHeadline(const std::optional<DriverStatus>& status, const TextSource& text) {
  if (isUnknown(status))
    return text("The driver has not answered yet.");
  if (!status->helperRuns)
    return text("The helper does not run. Your trackballs are ordinary mice until it does.");
  if (status->state == "unused")
    return text(keyFor(kStateWords, status->state));
  if (!isAtWork(status))
    return text("The driver is not at work. Your trackballs are ordinary mice for now.");
  const bool trouble = std::any_of(status->devices.begin(), status->devices.end(), isInTrouble);
  return text(trouble ? "The driver works, but not for every trackball."
                      : "The driver works: your trackballs do what you set here.");
}

std::string driverExplanation(const std::optional<DriverStatus>& status, const TextSource& text) {
  if (isUnknown(status) || !status->helperRuns)
    return driverHeadline(status, text);
  if (isAtWork(status))
    return filled(text("The driver works, version %1."), status->version);
  if (status->state == "unreachable")
    return filled(text("The driver cannot be reached: %1."), std::strerror(status->error));
  return text(keyFor(kStateWords, status->state));
}

std::string driverDevicesText(const std::optional<DriverStatus>& status, const TextSource& text) {
  std::string lines;
  if (!status)
    return lines;
  for (const DriverStatusDevice& device : status->devices) {
    const char* key = keyFor(kConditionWords, device.condition);
    lines += lines.empty() ? "" : "\n";
    lines += deviceTitle(device.product, device.version) + ": ";
    lines += key != nullptr ? text(key) : filled(text("cannot be used: %1"), std::strerror(device.error));
  }
  return lines;
}

std::string changesText(const std::optional<DriverStatus>& status, const TextSource& text) {
  if (isAtWork(status))
    return text("Every change takes effect at once.");
  if (isUnknown(status) || status->state == "unused")
    return text("Every change is saved at once.");
  return text("Every change is saved at once and takes effect as soon as the driver works.");
}

}  // namespace veltrix
