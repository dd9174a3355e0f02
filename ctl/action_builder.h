#pragma once

#include <cstdint>
#include <string>

#include "platform/property_list.h"
#include "util/result.h"

// New actions from the words of the command line, with every parameter that their command has. An error's
// code is the exit code to end with.
namespace veltrix::ctl {

using NewAction = Result<plist::Dictionary>;

NewAction clickAction(const std::string& kind, const std::string& modifiers);
NewAction keystrokeAction(const std::string& keys);
NewAction keyCodeAction(const std::string& keyCode, const std::string& modifiers);
NewAction scrollAction(const std::string& direction, std::int32_t count);
NewAction openAction(const std::string& path);  // relative to the working folder
NewAction launchAction(const std::string& name, const std::string& identifier);
NewAction urlAction(const std::string& url);
NewAction scriptAction(const std::string& text);
NewAction snippetAction(std::int32_t number);  // 1 to 10
NewAction plainAction(std::int32_t command);   // one of the catalogue that has no parameters

}  // namespace veltrix::ctl
