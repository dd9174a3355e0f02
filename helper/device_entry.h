#pragma once

#include <string>
#include <string_view>

#include "helperlink/device_list.h"

namespace veltrix {

// Puts UTF-8 text into a field of an entry: cut at a whole character, always ended and filled up by NULs.
void setEntryText(char (&field)[128], std::string_view text);

// The text of such a field.
std::string entryText(const char (&field)[128]);

// Text as the bus can carry it: every byte that is not part of well-formed UTF-8 becomes U+FFFD.
std::string busText(std::string_view text);

}  // namespace veltrix
