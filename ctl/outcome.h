#pragma once

#include <string>

namespace veltrix::ctl {

// What the program returns.
inline constexpr int kDone = 0;
inline constexpr int kNotFound = 1;  // also: a rule says no, somebody does not answer, a disk takes no file
inline constexpr int kBadInput = 2;  // also: bad usage

// Says something on standard error.
void note(const std::string& message);

// Says on standard error why a command ended with that code and hands the code on.
int fail(int code, const std::string& message);

// The message with the path before it, unless it names the path already.
std::string about(const std::string& path, const std::string& message);

}  // namespace veltrix::ctl
