#pragma once

#include <cstdint>

#include "platform/property_list.h"
#include "util/result.h"

// The rules of a button's new action. An error's code is the exit code to end with.
namespace veltrix::ctl {

// Whether the model of the entry has that button; a model that is not known may have any.
Status checkButtonOfModel(const plist::Dictionary& entry, std::int32_t button);

// Whether the button may be given that action: the wheel always scrolls, and one of the first four buttons
// keeps the plain primary click.
Status checkNewAction(const plist::Dictionary& entry, std::int32_t button, const plist::Dictionary& action);

}  // namespace veltrix::ctl
