#pragma once

#include <cstdint>

#include "platform/property_list.h"

// Rules over device entries that the pane, the helper and the command line decide by. A missing entry or key
// reads as 0.

// Whether every key that an entry must have is present; values are not looked at.
bool VeltrixValidateSettings(const veltrix::plist::Dictionary& entry);

// Whether the entry applies to every device: vendor, product and both version bounds read 0.
bool VeltrixSettingsAreGlobal(const veltrix::plist::Dictionary& entry);

// The lowest button number in first..last, both included, other than `excluded` (-1 for none), that holds the
// plain primary click; -1 when there is none.
std::int32_t VeltrixFindClickInSettings(const veltrix::plist::Dictionary& entry, std::int32_t first,
                                        std::int32_t last, std::int32_t excluded);

// Chooses the entry of `devices` for a device: a matching vendor and a matching product score 100 each, the
// earlier of equals wins. `bestIndex` and `globalIndex` (each may be null) receive -1 when there is none.
// True when there is one of the two. The two arguments after the array are not consulted.
bool VeltrixMatchAppPrefs(const veltrix::plist::Array& devices, const void* unused1, const void* unused2,
                          std::uint16_t vendorId, std::uint16_t productId, std::uint16_t productVersion,
                          std::int32_t* bestIndex, std::int32_t* globalIndex);
