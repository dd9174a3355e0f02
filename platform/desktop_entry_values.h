#pragma once

#include <string>
#include <string_view>
#include <vector>

// How a desktop entry spells its values.
namespace veltrix {

// A value of type string with its escapes resolved; unknown ones stay as they are.
std::string unescapedValue(std::string_view value);

// Text as a value that reads back as the same.
std::string escapedValue(std::string_view text);

// The items of a value that is a list, without empty ones. Semicolons end items; an escaped one belongs to
// its item.
std::vector<std::string> unescapedList(std::string_view value);

// How well a text in the language `offered` ("de", "de_AT", "sr@latin"; empty for the text without a
// language) suits a user of `wanted`, the name of a locale ("de_AT.UTF-8"): 0 for not at all, more for
// better. Character sets play no part.
int languageMatch(std::string_view offered, std::string_view wanted);

}  // namespace veltrix
