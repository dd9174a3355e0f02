#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/property_list.h"

// Dates as XML property lists spell them, "2024-02-29T23:59:00Z": UTC, the proleptic Gregorian calendar,
// years 0000 to 9999, whole seconds.
namespace veltrix::plist {

// Nothing for any other spelling and for days and times that do not exist (a leap second is one of them).
std::optional<Date> parseDate(std::string_view text);

// A fraction of a second is dropped (toward the past). Nothing when the year has no four digits or the date
// is not finite.
std::optional<std::string> formatDate(Date date);

}  // namespace veltrix::plist
