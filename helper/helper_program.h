#pragma once

#include "helper/helper_options.h"
#include "helper/keeper.h"

namespace veltrix {

// Exit statuses; see the usage text.
inline constexpr int kExitDone = 0;
inline constexpr int kExitCannotStart = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitNoBus = 3;

// Runs the helper until a signal asks it to end. Says on standard error why it could not start.
// `keeper` is told that the helper is at work; none when there is to be no successor.
int runHelper(const HelperOptions& options, const Keeper* keeper);

}  // namespace veltrix
