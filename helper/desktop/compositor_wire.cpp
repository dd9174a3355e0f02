#include "helper/desktop/compositor_wire.h"

#include <cstring>
#include <nlohmann/json.hpp>

#include "helper/desktop/one_line.h"

namespace veltrix {
namespace {

constexpr std::string_view kMagic = "i3-ipc";
constexpr std::uint32_t kRunCommand = 0;

Error strange(const char* what) {
  return {0, std::string("the compositor's answer ") + what, {}};
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

std::string compositorCommand(std::string_view command) {
  std::string message(kMagic);
  append(message, static_cast<std::uint32_t>(command.size()));
  append(message, kRunCommand);
  return message.append(command);
}

Result<std::size_t> compositorAnswerLength(std::string_view header) {
  if (header.size() != kCompositorHeader || !header.starts_with(kMagic) ||
      numberAt(header, kMagic.size() + 4) != kRunCommand) {
    return strange("is of another kind");
  }
  const std::size_t length = numberAt(header, kMagic.size());
  if (length > kLongestCompositorAnswer) {
    return strange("is too long");
  }
  return length;
}

Status compositorOutcome(std::string_view body) {
  const auto answer = nlohmann::json::parse(body, nullptr, false);
  if (!answer.is_array() || answer.empty()) {
    return strange("cannot be read");
  }
  for (const auto& part : answer) {
    const auto success = part.is_object() ? part.find("success") : part.end();
    if (!part.is_object() || success == part.end() || !success->is_boolean()) {
      return strange("cannot be read");
    }
    if (!success->get<bool>()) {
      const auto reason = part.find("error");
      const bool isSaid = reason != part.end() && reason->is_string();
      return Error{
          0, isSaid ? oneLine(reason->get<std::string>()) : "the compositor refused the command", {}};
    }
  }
  return Done{};
}

}  // namespace veltrix
