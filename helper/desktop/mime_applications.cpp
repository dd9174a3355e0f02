#include "helper/desktop/mime_applications.h"

#include <algorithm>

#include "platform/desktop_entry_file.h"
#include "platform/desktop_entry_values.h"
#include "platform/key_file.h"

namespace veltrix {

namespace {

constexpr std::string_view kListName = "mimeapps.list";
constexpr std::string_view kIndexName = "mimeinfo.cache";
constexpr std::string_view kSuffix = ".desktop";

std::vector<std::string> listOf(std::string_view bytes, std::string_view group, std::string_view type) {
  std::vector<std::string> list;
  readKeyFileGroup(bytes, group, [&list, type](std::string_view key, std::string_view value) {
    if (key == type) {
      list = unescapedList(value);
    }
  });
  return list;
}

std::string lowered(std::string text) {
  for (char& character : text) {
    character = static_cast<char>(character >= 'A' && character <= 'Z' ? character - 'A' + 'a' : character);
  }
  return text;
}

// What the lists say, the most important one first: those of the user before those of the system, of one
// folder those of this desktop before the one for every desktop.
std::vector<MimeChoices> allChoices(std::string_view type, const ApplicationSearch& search,
                                    std::vector<std::string> folders) {
  folders.insert(folders.end(), search.folders.begin(), search.folders.end());
  std::vector<MimeChoices> all;
  for (const std::string& folder : folders) {
    for (const std::string& desktop : search.desktops) {
      // A name with a slash in it would lead elsewhere.
      if (desktop.find('/') == std::string::npos) {
        const std::string path = folder + "/" + lowered(desktop) + "-" + std::string(kListName);
        all.push_back(readMimeChoices(readEntryFile(path), type));
      }
    }
    all.push_back(readMimeChoices(readEntryFile(folder + "/" + std::string(kListName)), type));
  }
  return all;
}

// The first of them that is installed and that nobody has taken away.
std::optional<InstalledApplication> firstInstalled(const std::vector<std::string>& files,
                                                   const std::vector<std::string>& removed,
                                                   const ApplicationSearch& search) {
  for (const std::string& file : files) {
    if (!file.ends_with(kSuffix) || std::find(removed.begin(), removed.end(), file) != removed.end()) {
      continue;
    }
    const std::string_view identifier = std::string_view(file).substr(0, file.size() - kSuffix.size());
    if (auto application = installedApplication(identifier, search)) {
      return application;
    }
  }
  return {};
}

}  // namespace

MimeChoices readMimeChoices(std::string_view bytes, std::string_view type) {
  return {listOf(bytes, "Default Applications", type), listOf(bytes, "Added Associations", type),
          listOf(bytes, "Removed Associations", type), listOf(bytes, "MIME Cache", type)};
}

std::optional<InstalledApplication> defaultApplication(std::string_view type, const ApplicationSearch& search,
                                                       const std::vector<std::string>& settings) {
  const std::vector<MimeChoices> all = allChoices(type, search, settings);
  for (const MimeChoices& choices : all) {
    if (auto application = firstInstalled(choices.defaults, {}, search)) {
      return application;
    }
  }
  std::vector<std::string> removed;
  for (const MimeChoices& choices : all) {
    if (auto application = firstInstalled(choices.added, removed, search)) {
      return application;
    }
    removed.insert(removed.end(), choices.removed.begin(), choices.removed.end());
  }
  for (const std::string& folder : search.folders) {
    const std::string index = readEntryFile(folder + "/" + std::string(kIndexName));
    if (auto application = firstInstalled(readMimeChoices(index, type).cached, removed, search)) {
      return application;
    }
  }
  return {};
}

}  // namespace veltrix
