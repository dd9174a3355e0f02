#pragma once

#include <optional>
#include <string>
#include <string_view>

// An application is a folder "Name.app" that holds its program "Name".
namespace veltrix {

// The last component of a path without a final ".app", which counts only in lower case.
std::string applicationName(std::string_view application);

// The program of the application folder.
std::string programOfApplication(std::string_view application);

// The nearest folder around `program` whose name ends in ".app"; none without one or when `program` is not
// absolute. Does not look whether it exists.
std::optional<std::string> applicationOfProgram(std::string_view program);

// Where to find the application that a path outside the product names: the application folder of
// the same name in `resourceFolder` when there is one, else `path` itself.
std::string packagedApplication(const std::string& path, const std::string& resourceFolder);

// The text without a final ".app".
std::string_view withoutApplicationSuffix(std::string_view name);

}  // namespace veltrix
