#pragma once

#include <string>
#include <string_view>

#include "platform/property_list.h"
#include "util/result.h"

namespace veltrix::ctl {

// A scalar as a person writes it: true, 400, 0.74, a text as it is; containers as JSON on one line.
std::string valueText(const plist::Value& value);

// The same with texts in quotes, on one line.
std::string quotedValueText(const plist::Value& value);

// One line "PATH = VALUE" for each scalar in `value`, with paths that begin with `prefix`; texts in quotes.
std::string valueLines(const plist::Value& value, const std::string& prefix);

// Reads a text as a boolean (true, false, yes, no, on, off, 1, 0), an integer (decimal, or hexadecimal behind
// 0x), a real number or a string. Fails for text that is no such value and for other types.
Result<plist::Value> parseValue(std::string_view text, plist::Type type);

}  // namespace veltrix::ctl
