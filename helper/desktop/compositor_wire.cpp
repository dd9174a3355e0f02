#include "helper/desktop/compositor_wire.h"

#include <cstring>
#include <nlohmann/json.hpp>

#include "helper/desktop/one_line.h"

namespace veltrix {
namespace {

constexpr std::string_view kMagic = "i3-ipc";

Error strange(const char* what) {
  return {0, what, {}};
}

// Numbers are in the machine's own order, since both ends are on it.
void append(std::string& text, std::uint32_t number) {
  char bytes[sizeof number];
  std::memcpy(bytes, &number, sizeof number);
  text.append(bytes, sizeof number);
}

std::uint32_t numberAt(std::string_view text, std::size_t at) {
  std::uint32_t number = 0;
  std::memcpy(&number, text.data() + at, sizeof number);
  return number;
}

}  // namespace

std::string compositorMessage(CompositorKind kind, std::string_view body) {
  std::string message(kMagic);
  append(message, static_cast<std::uint32_t>(body.size()));
  append(message, static_cast<std::uint32_t>(kind));
  return message.append(body);
}

Result<CompositorHead> compositorHead(std::string_view header) {
  if (header.size() != kCompositorHeader || !header.starts_with(kMagic)) {
    return strange("the compositor's answer is of another kind");
  }
  const CompositorHead head{static_cast<CompositorKind>(numberAt(header, kMagic.size() + 4)),
                            numberAt(header, kMagic.size())};
  if (head.length > kLongestCompositorAnswer) {
    return strange("the compositor's answer is too long");
  }
  return head;
}

std::string compositorCommand(std::string_view command) {
  return compositorMessage(CompositorKind::kCommand, command);
}

Result<std::size_t> compositorAnswerLength(std::string_view header) {
  const auto head = compositorHead(header);
  if (!head) {
    return head.error();
  }
  if (head.value().kind != CompositorKind::kCommand) {
    return strange("the compositor's answer is of another kind");
  }
  return head.value().length;
}

Status compositorOutcome(std::string_view body) {
  const auto answer = nlohmann::json::parse(body, nullptr, false);
  if (!answer.is_array() || answer.empty()) {
    return strange("the compositor's answer cannot be read");
  }
  for (const auto& part : answer) {
    const auto success = part.is_object() ? part.find("success") : part.end();
    if (!part.is_object() || success == part.end() || !success->is_boolean()) {
      return strange("the compositor's answer cannot be read");
    }
    if (!success->get<bool>()) {
      const auto reason = part.find("error");
      if (reason != part.end() && reason->is_string()) {
        return Error{0, oneLine(reason->get<std::string>()), {}};
      }
      return Error{0, "the compositor refused the command", {}};
    }
  }
  return Done{};
}

}  // namespace veltrix
