#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "util/result.h"

// The messages of sway and i3 over their socket.
namespace veltrix {

inline constexpr std::size_t kCompositorHeader = 14;
// Room for dozens of input devices; an answer to a command is far shorter.
inline constexpr std::size_t kLongestCompositorAnswer = 65536;

// What a message is; an answer is of the kind of its question. Only sway knows those about inputs.
enum class CompositorKind : std::uint32_t {
  kCommand = 0,
  kSubscription = 2,
  kInputs = 100,
  kInputEvent = 0x80000015,
};

struct CompositorHead {
  CompositorKind kind;  // any number
  std::size_t length;   // of the body
};

// A message as the socket takes it.
std::string compositorMessage(CompositorKind kind, std::string_view body);

// What a header of kCompositorHeader bytes says; an error when it is none or the body is longer than
// kLongestCompositorAnswer.
Result<CompositorHead> compositorHead(std::string_view header);

// A command as the socket takes it.
std::string compositorCommand(std::string_view command);

// The length of the body behind a header of kCompositorHeader bytes; an error when it is no answer to a
// command or longer than kLongestCompositorAnswer.
Result<std::size_t> compositorAnswerLength(std::string_view header);

// What the body of an answer says: done, or the first reason why it was not.
Status compositorOutcome(std::string_view body);

}  // namespace veltrix
