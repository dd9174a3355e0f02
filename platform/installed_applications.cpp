#include "platform/installed_applications.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <set>
#include <utility>

#include "platform/desktop_entry.h"
#include "platform/desktop_entry_file.h"
#include "platform/text_encoding.h"

namespace veltrix {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSuffix = ".desktop";
constexpr std::size_t kMaximumEntries = 20'000;

struct EntryFile {
  std::string identifier;
  std::string path;
};

// The file's place below `folder` as an identifier; empty when it does not lie there or is no entry.
std::string identifierIn(const std::string& folder, std::string_view path) {
  const std::string start = folder + "/";
  if (!path.starts_with(start) || !path.ends_with(kSuffix) || path.size() <= start.size() + kSuffix.size()) {
    return "";
  }
  std::string identifier(path.substr(start.size(), path.size() - start.size() - kSuffix.size()));
  std::replace(identifier.begin(), identifier.end(), '/', '-');
  return identifier;
}

// Links to folders are not followed: they may lead in circles, or to everything that there is.
void findEntries(const std::string& top, const std::string& folder, std::vector<EntryFile>* found) {
  std::vector<std::string> paths;
  std::error_code error;
  for (fs::directory_iterator each(folder, error); !error && each != fs::directory_iterator();
       each.increment(error)) {
    paths.push_back(each->path().string());
  }
  std::sort(paths.begin(), paths.end());
  for (const std::string& path : paths) {
    if (found->size() >= kMaximumEntries) {
      return;
    }
    if (path.ends_with(kSuffix)) {
      found->push_back({identifierIn(top, path), path});
    } else if (fs::is_directory(fs::symlink_status(path, error))) {
      findEntries(top, path, found);
    }
  }
}

// All files that may be entries, those of the first folder first.
std::vector<EntryFile> entryFiles(const ApplicationSearch& search) {
  std::vector<EntryFile> files;
  for (const std::string& folder : search.folders) {
    findEntries(folder, folder, &files);
  }
  return files;
}

// What is shown in a line of text and kept in a settings file: bytes that are no UTF-8 become the replacement
// character, control characters blanks.
std::string cleanText(std::string_view text) {
  std::string clean;
  for (std::size_t at = 0; at < text.size();) {
    const std::optional<char32_t> character = nextUtf8(text, at);
    if (!character) {
      appendUtf8(clean, 0xFFFD);
      ++at;
      continue;
    }
    const bool isControl = *character < 0x20 || (*character >= 0x7F && *character < 0xA0);
    const bool isNone = *character == 0xFFFE || *character == 0xFFFF;
    appendUtf8(clean, isControl ? U' ' : isNone ? U'\xFFFD' : *character);
  }
  return clean;
}

bool canExecute(const std::string& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored) && access(path.c_str(), X_OK) == 0;
}

bool programExists(const std::string& program, const ApplicationSearch& search) {
  if (program.find('/') != std::string::npos) {
    return program.starts_with('/') && canExecute(program);
  }
  return std::any_of(search.programs.begin(), search.programs.end(),
                     [&program](const std::string& folder) { return canExecute(folder + "/" + program); });
}

bool contains(const std::vector<std::string>& list, const std::string& text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

// The first of the desktop's names that one of the two lists names decides.
bool belongsToDesktop(const DesktopEntry& entry, const ApplicationSearch& search) {
  for (const std::string& desktop : search.desktops) {
    if (contains(entry.onlyShowIn, desktop)) {
      return true;
    }
    if (contains(entry.notShowIn, desktop)) {
      return false;
    }
  }
  return entry.onlyShowIn.empty();
}

// Whether the entry says anything at all; a file that does not is no reason to forget one behind it.
bool makesSense(const DesktopEntry& entry) {
  return entry.hidden || !entry.type.empty();
}

bool canBeStarted(const DesktopEntry& entry, const ApplicationSearch& search) {
  return !entry.hidden && entry.type == "Application" && entry.name && !cleanText(*entry.name).empty() &&
         (entry.busActivatable || !entry.arguments.empty()) &&
         (entry.tryExec.empty() || programExists(entry.tryExec, search));
}

InstalledApplication makeApplication(const EntryFile& file, DesktopEntry entry) {
  InstalledApplication application;
  application.identifier = file.identifier;
  application.name = cleanText(entry.name.value_or(""));
  application.comment = cleanText(entry.comment);
  for (const std::string& keyword : entry.keywords) {
    application.keywords.push_back(cleanText(keyword));
  }
  application.icon = std::move(entry.icon);
  application.arguments = std::move(entry.arguments);
  application.path = file.path;
  application.folder = std::move(entry.folder);
  application.terminal = entry.terminal;
  application.busActivatable = entry.busActivatable;
  return application;
}

bool comesBefore(const InstalledApplication& a, const InstalledApplication& b) {
  const int order = std::strcoll(a.name.c_str(), b.name.c_str());
  return order != 0 ? order < 0 : a.identifier < b.identifier;
}

bool isCleanIdentifier(const std::string& identifier) {
  return !identifier.empty() && cleanText(identifier) == identifier;
}

}  // namespace

std::vector<InstalledApplication> installedApplications(const ApplicationSearch& search) {
  std::vector<InstalledApplication> applications;
  std::set<std::string> seen;
  for (const EntryFile& file : entryFiles(search)) {
    if (!isCleanIdentifier(file.identifier) || seen.count(file.identifier) != 0) {
      continue;
    }
    DesktopEntry entry = readDesktopEntry(readEntryFile(file.path), search.language);
    if (!makesSense(entry)) {
      continue;
    }
    seen.insert(file.identifier);
    if (!entry.noDisplay && canBeStarted(entry, search) && belongsToDesktop(entry, search)) {
      applications.push_back(makeApplication(file, std::move(entry)));
    }
  }
  std::sort(applications.begin(), applications.end(), comesBefore);
  return applications;
}

std::optional<InstalledApplication> installedApplication(std::string_view identifier,
                                                         const ApplicationSearch& search) {
  for (const EntryFile& file : entryFiles(search)) {
    if (file.identifier != identifier) {
      continue;
    }
    DesktopEntry entry = readDesktopEntry(readEntryFile(file.path), search.language);
    if (makesSense(entry)) {
      return canBeStarted(entry, search) ? std::optional(makeApplication(file, std::move(entry)))
                                         : std::nullopt;
    }
  }
  return {};
}

std::optional<InstalledApplication> applicationOfEntry(const std::string& path,
                                                       const ApplicationSearch& search) {
  DesktopEntry entry = readDesktopEntry(readEntryFile(path), search.language);
  if (!canBeStarted(entry, search)) {
    return {};
  }
  for (const std::string& folder : search.folders) {
    const std::string identifier = identifierIn(folder, path);
    auto found = isCleanIdentifier(identifier) ? installedApplication(identifier, search) : std::nullopt;
    if (found && found->path == path) {
      return found;
    }
  }
  return makeApplication({"", path}, std::move(entry));
}

}  // namespace veltrix
