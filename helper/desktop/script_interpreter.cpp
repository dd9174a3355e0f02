#include "helper/desktop/script_interpreter.h"

#include <cerrno>

#include "helper/desktop/one_line.h"
#include "util/phrase.h"

namespace veltrix {

namespace {

constexpr std::string_view kMark = "#!";
constexpr std::string_view kBlanks = " \t\r";
constexpr const char* kShell = "/bin/sh";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

Result<std::vector<std::string>> interpreterOf(std::string_view script) {
  if (!script.starts_with(kMark)) {
    return std::vector<std::string>{kShell};
  }
  const std::string_view line = trimmed(script.substr(kMark.size(), script.find('\n') - kMark.size()));
  if (line.empty()) {
    return std::vector<std::string>{kShell};
  }
  const std::string_view program = line.substr(0, line.find_first_of(kBlanks));
  const std::string_view argument = trimmed(line.substr(program.size()));
  if (!program.starts_with('/') || line.find('\0') != std::string_view::npos) {
    return phrasedError(EINVAL,
                        {"the script's interpreter has no absolute path: %1", {given(oneLine(line))}});
  }
  std::vector<std::string> interpreter{std::string(program)};
  if (!argument.empty()) {
    interpreter.emplace_back(argument);
  }
  return interpreter;
}

}  // namespace veltrix
