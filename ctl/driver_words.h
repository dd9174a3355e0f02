#pragma once

#include <string>
#include <string_view>

namespace veltrix::ctl {

// Whether the driver is there and why not, for a person: the helper's properties DriverState, DriverVersion
// and DriverError in one line. A state that this version does not know comes back as it is.
std::string driverText(std::string_view state, std::string_view version, int error);

// What the driver does with a trackball, by its condition and errno; the same holds.
std::string driverConditionText(std::string_view condition, int error);

}  // namespace veltrix::ctl
