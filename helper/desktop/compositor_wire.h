#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "util/result.h"

// The messages of sway and i3 over their socket.
namespace veltrix {

inline constexpr std::size_t kCompositorHeader = 14;
// An answer to a command is far shorter.
inline constexpr std::size_t kLongestCompositorAnswer = 65536;

// A command as the socket takes it.
std::string compositorCommand(std::string_view command);

// The length of the body behind a header of kCompositorHeader bytes; an error when it is no answer to a
// command or longer than kLongestCompositorAnswer.
Result<std::size_t> compositorAnswerLength(std::string_view header);

// What the body of an answer says: done, or the first reason why it was not.
Status compositorOutcome(std::string_view body);

}  // namespace veltrix
