#pragma once

#include <nlohmann/json.hpp>

#include "platform/property_list.h"

namespace veltrix::ctl {

using Json = nlohmann::ordered_json;

// Data becomes base64 text, a date its ISO text, a number that JSON cannot hold null.
Json jsonOf(const plist::Value& value);

// Indented text with a final newline; bytes that are not UTF-8 show as U+FFFD.
std::string jsonText(const Json& json);

}  // namespace veltrix::ctl
