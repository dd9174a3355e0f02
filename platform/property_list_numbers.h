#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Numbers as XML property lists spell them; the process's locale plays no part.
namespace veltrix::plist {

// Decimal, or hexadecimal after "0x", with an optional sign and blanks around it. Nothing for any other text
// and for values beyond 64 bits with sign.
std::optional<std::int64_t> parseInteger(std::string_view text);

// Decimal with an optional exponent, "nan", "inf" or "infinity" in any case, with an optional sign and blanks
// around it. Nothing for any other text and for values beyond the range of a double.
std::optional<double> parseReal(std::string_view text);

// The shortest text that parseReal reads back as the same number.
std::string formatReal(double value);

}  // namespace veltrix::plist
