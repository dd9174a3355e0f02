#include "helper/desktop/user_folders.h"

#include <optional>

#include "platform/desktop_entry_file.h"
#include "platform/user_paths.h"
#include "util/path_text.h"

namespace veltrix {

namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kHome = "$HOME";

// The text between the quotes of a shell's assignment, without what quotes its characters.
std::optional<std::string> quotedValue(std::string_view text) {
  if (text.empty() || text.front() != '"') {
    return {};
  }
  std::string value;
  for (std::size_t at = 1; at < text.size() && text[at] != '"'; ++at) {
    at += text[at] == '\\' && at + 1 < text.size() ? 1 : 0;
    value += text[at];
  }
  return value;
}

// Empty for what is no assignment to the variable or names no folder.
std::string folderInLine(std::string_view line, const std::string& variable, const std::string& home) {
  const std::size_t first = line.find_first_not_of(kBlanks);
  line.remove_prefix(first == std::string_view::npos ? line.size() : first);
  if (!line.starts_with(variable)) {
    return "";
  }
  const auto value = quotedValue(line.substr(variable.size()));
  if (!value || value->find('\0') != std::string::npos) {
    return "";
  }
  if (value->starts_with(kHome) && (value->size() == kHome.size() || (*value)[kHome.size()] == '/')) {
    return home.empty() ? "" : withoutFinalSlashes(home + value->substr(kHome.size()));
  }
  return value->starts_with('/') ? withoutFinalSlashes(*value) : "";
}

}  // namespace

std::string readUserFolder(std::string_view bytes, std::string_view subject, const std::string& home) {
  const std::string variable = "XDG_" + std::string(subject) + "_DIR=";
  std::string folder;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    const std::string found = folderInLine(bytes.substr(0, end), variable, home);
    folder = found.empty() ? folder : found;
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
  }
  return folder;
}

std::string userFolder(std::string_view subject, std::string_view usual) {
  const std::string home = homeDirectory();
  const std::string settings = configDirectory();
  std::string named =
      settings.empty() ? "" : readUserFolder(readEntryFile(settings + "/user-dirs.dirs"), subject, home);
  if (!named.empty() || home.empty()) {
    return named;
  }
  return (home == "/" ? "" : home) + "/" + std::string(usual);
}

}  // namespace veltrix
