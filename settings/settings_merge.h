#pragma once

#include "platform/property_list.h"

namespace veltrix {

// Whether a document may serve as the user's: "version" above 1 and at least one element in "devices".
bool isUsableDocument(const plist::Dictionary& document);

// Adds to `user` what only the factory settings have: entries whose product and version bounds no user entry
// has, "param" where the user's entry lacks it, "snippets" where there is no such key. Whatever `user` holds
// stays. Parts of `factory` become parts of `user`, so the caller gives `factory` up. Takes time in
// proportion to the entries of both.
void mergeFactorySettings(plist::Dictionary user, const plist::Dictionary& factory);

}  // namespace veltrix
