#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/property_list.h"

// The settings document as the model holds it: JSON, with readers that take any number for any other. All of
// it is written apart from the code under test.
namespace veltrix::model {

using Json = nlohmann::json;  // the order of keys carries nothing

Json jsonOf(const plist::Value& value);
plist::Value plistOf(const Json& json);

// The value under a key of a dictionary; missing keys, and keys of anything else, read as 0, false or empty.
// A text reads as its leading integer, a real is truncated; integers keep their low 32 bits.
std::int32_t intOf(const Json& dictionary, const std::string& key);
std::uint16_t lowBitsOf(const Json& dictionary, const std::string& key);
bool boolOf(const Json& dictionary, const std::string& key);
double realOf(const Json& dictionary, const std::string& key);
std::string textOf(const Json& dictionary, const std::string& key);

std::string buttonName(int button);  // two digits
bool hasAction(const Json& entry, int button);
const Json& actionOf(const Json& entry, int button);  // an empty dictionary when there is none

// The document of a user after loading: what factory entries are missing is added, as are scroll parameters
// and snippets.
Json merged(Json user, const Json& factory);

// Same types and same values; 1 and 1.0 differ.
bool same(const Json& a, const Json& b);

// What one would have to change to get from `expected` to `actual`.
std::string difference(const Json& expected, const Json& actual);

}  // namespace veltrix::model
