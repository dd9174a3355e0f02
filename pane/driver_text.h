#pragma once

#include <functional>
#include <optional>
#include <string>

#include "helperlink/driver_status.h"

// What the pane says of the driver. A status that is not there is one that nobody has told yet. All texts are
// UTF-8.
namespace veltrix {

// Gives the text of an English key in the user's language.
using TextSource = std::function<std::string(const char* key)>;

// Whether the driver is at work, in a line.
std::string driverHeadline(const std::optional<DriverStatus>& status, const TextSource& text);

// Why it is as it is, and what helps.
std::string driverExplanation(const std::optional<DriverStatus>& status, const TextSource& text);

// A line for each trackball that the driver knows, with what it does with it; empty without any.
std::string driverDevicesText(const std::optional<DriverStatus>& status, const TextSource& text);

// What becomes of a change in the window.
std::string changesText(const std::optional<DriverStatus>& status, const TextSource& text);

}  // namespace veltrix
