#pragma once

#include <cstdint>
#include <string>

#include "platform/property_list.h"

namespace veltrix {

// Writes the name or the text of snippet `index` (0 to 9) into the list itself. A list that ends before it is
// filled up with empty snippets first. Nothing happens without a list or with another index.
void setSnippetName(const plist::Array& snippets, std::int32_t index, const std::string& name);
void setSnippetText(const plist::Array& snippets, std::int32_t index, const std::string& text);

// Empty for a snippet that is not there.
std::string snippetText(const plist::Array& snippets, std::int32_t index);

}  // namespace veltrix
