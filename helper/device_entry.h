#pragma once

#include <cstddef>
#include <cstdint>
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

// A number of one to `digits` hexadecimal digits and nothing else. False, with `value` untouched, for any
// other text.
bool parseHex(std::string_view text, std::size_t digits, std::uint16_t* value);

// A USB version, two binary-coded decimal bytes, as the plain binary of VeltrixDeviceEntry::productVers.
std::uint16_t productVersionFromBcd(std::uint16_t bcd);

}  // namespace veltrix
