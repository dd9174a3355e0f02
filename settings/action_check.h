#pragma once

#include "platform/property_list.h"
#include "settings/problem_list.h"

namespace veltrix {

// The problems of "buttons": keys, commands, and parameters of the command's class.
void checkButtons(const plist::Dictionary& buttons, const ProblemList& problems);

}  // namespace veltrix
