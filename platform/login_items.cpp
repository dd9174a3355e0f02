#include "platform/login_items.h"

#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "platform/application_folder.h"
#include "platform/atomic_file.h"
#include "platform/desktop_entry.h"
#include "platform/desktop_entry_file.h"
#include "platform/user_paths.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

constexpr std::size_t kMaximumFileNameBytes = 200;
constexpr int kMaximumNameTries = 1000;

std::function<std::unique_ptr<LoginItemList>()>& replacement() {
  static std::function<std::unique_ptr<LoginItemList>()> open;
  return open;
}

class AutostartEntry : public LoginItem {
 public:
  explicit AutostartEntry(std::string path)
      : fPath(std::move(path)), fEntry(readDesktopEntry(readEntryFile(fPath))) {}

  std::optional<std::string> displayName() const override {
    return fEntry.name && !fEntry.name->empty() ? fEntry.name : std::nullopt;
  }

  std::optional<std::string> resolve() const override {
    const auto application =
        fEntry.arguments.empty() ? std::nullopt : applicationOfProgram(fEntry.arguments.front());
    std::error_code ignored;
    return application && std::filesystem::is_directory(*application, ignored) ? application : std::nullopt;
  }

  Status remove() override {
    if (unlink(fPath.c_str()) != 0) {
      return systemError(errno, "cannot remove", fPath);
    }
    return Done();
  }

 private:
  std::string fPath;
  DesktopEntry fEntry;
};

// A name for the file of an entry: no separators and control characters, and room for a number.
std::string fileNameFor(const std::string& name) {
  std::string fileName = name.substr(0, kMaximumFileNameBytes);
  std::replace_if(
      fileName.begin(), fileName.end(),
      [](char each) { return each == '/' || (each >= '\0' && each < ' ') || each == '\x7F'; }, '-');
  return fileName.empty() || fileName.front() == '.' ? "-" + fileName : fileName;
}

class AutostartFolder : public LoginItemList {
 public:
  explicit AutostartFolder(std::string folder) : fFolder(std::move(folder)) {}

  Result<std::vector<std::unique_ptr<LoginItem>>> snapshot() override;
  Status append(const std::string& application) override;

 private:
  std::string fFolder;
};

Result<std::vector<std::unique_ptr<LoginItem>>> AutostartFolder::snapshot() {
  std::vector<std::unique_ptr<LoginItem>> items;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(fFolder.c_str()), &closedir);
  if (folder == nullptr) {
    if (errno == ENOENT) {
      return items;
    }
    return systemError(errno, "cannot read", fFolder);
  }
  std::vector<std::string> names;
  while (const dirent* entry = readdir(folder.get())) {
    if (std::string_view(entry->d_name).ends_with(".desktop")) {
      names.emplace_back(entry->d_name);
    }
  }
  std::sort(names.begin(), names.end());
  items.reserve(names.size());
  for (const std::string& name : names) {
    items.push_back(std::make_unique<AutostartEntry>(fFolder + "/" + name));
  }
  return items;
}

Status AutostartFolder::append(const std::string& application) {
  const std::string name = applicationName(application);
  const std::string entry = writeAutostartEntry(name, programOfApplication(application));
  const std::string path = fFolder + "/" + fileNameFor(name);
  for (int number = 1; number <= kMaximumNameTries; ++number) {
    Status written =
        writeNewFileAtomically(path + (number == 1 ? "" : "-" + std::to_string(number)) + ".desktop", entry);
    if (written || written.error().code != EEXIST) {
      return written;
    }
  }
  return systemError(EEXIST, "cannot write", path);
}

}  // namespace

std::unique_ptr<LoginItemList> openAutostartFolder(const std::string& folder) {
  return std::make_unique<AutostartFolder>(folder);
}

std::unique_ptr<LoginItemList> openLoginItems() {
  if (replacement()) {
    return replacement()();
  }
  const std::string config = configDirectory();
  return config.empty() ? nullptr : openAutostartFolder(config + "/autostart");
}

void setLoginItemsForTesting(std::function<std::unique_ptr<LoginItemList>()> open) {
  replacement() = std::move(open);
}

}  // namespace veltrix
