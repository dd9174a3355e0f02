#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace veltrix {

// Whether a variable is this process's own and means nothing, or something wrong, to a program that it
// starts: what the service manager told it, and the token by which it was itself started.
bool isOwnVariable(std::string_view name);

// The environment of this process without such variables, as "NAME=value".
std::vector<std::string> childEnvironment();

}  // namespace veltrix
