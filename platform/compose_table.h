#pragma once

#include <string>

#include "platform/xkb_handles.h"

namespace veltrix::xkb {

// The locale of the user's characters, by whose table dead keys compose.
std::string composeLocale();

// The table for a locale, or the one for English when it has none (as the C locale). Null without either.
ComposeTable composeTableOf(xkb_context* context, const std::string& locale);

}  // namespace veltrix::xkb
