#include "helper/desktop/application_finder.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <optional>
#include <system_error>

#include "helper/desktop/item_path.h"
#include "helper/desktop/one_line.h"
#include "platform/application_folder.h"
#include "platform/property_list_io.h"
#include "util/phrase.h"

namespace veltrix {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kEntrySuffix = ".desktop";
constexpr std::string_view kFolderSuffix = ".app";

bool isProgram(const std::string& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored) && access(path.c_str(), X_OK) == 0;
}

bool isFolder(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

// Something whose program is all that is known of it.
InstalledApplication applicationOf(const std::string& program, const std::string& name) {
  InstalledApplication application;
  application.name = name;
  application.arguments = {program};
  return application;
}

std::optional<InstalledApplication> applicationInFolder(const std::string& folder) {
  const std::string program = programOfApplication(folder);
  return isProgram(program) ? std::optional(applicationOf(program, applicationName(folder))) : std::nullopt;
}

// The first application folder in the places that is the wanted one.
std::optional<InstalledApplication> findFolder(const ApplicationPlaces& places,
                                               const std::function<bool(const std::string&)>& isWanted) {
  for (const std::string& place : places.folders) {
    std::error_code error;
    for (fs::directory_iterator each(place, error); !error && each != fs::directory_iterator();
         each.increment(error)) {
      const std::string path = each->path().string();
      auto application = path.ends_with(kFolderSuffix) && isFolder(path) && isWanted(path)
                             ? applicationInFolder(path)
                             : std::nullopt;
      if (application) {
        return application;
      }
    }
  }
  return {};
}

bool hasIdentifier(const std::string& folder, const std::string& identifier) {
  const auto document = plist::readFile(folder + "/Contents/Info.plist");
  return document && document.value().root.asDictionary().stringFor("CFBundleIdentifier") == identifier;
}

std::optional<InstalledApplication> byIdentifier(const std::string& identifier,
                                                 const ApplicationPlaces& places) {
  if (identifier.empty() || identifier.find('\0') != std::string::npos) {
    return {};
  }
  if (identifier.front() == '/') {
    auto application = applicationAt(identifier, places);
    return application ? std::optional(std::move(application.value())) : std::nullopt;
  }
  if (auto application = installedApplication(identifier, places.search)) {
    return application;
  }
  return findFolder(places,
                    [&identifier](const std::string& folder) { return hasIdentifier(folder, identifier); });
}

std::optional<InstalledApplication> byName(const std::string& name, const ApplicationPlaces& places) {
  if (name.empty()) {
    return {};
  }
  for (InstalledApplication& application : installedApplications(places.search)) {
    if (application.name == name) {
      return std::move(application);
    }
  }
  if (auto application = installedApplication(name, places.search)) {
    return application;
  }
  return findFolder(places, [&name](const std::string& folder) { return applicationName(folder) == name; });
}

bool isPath(const std::string& text) {
  return text.starts_with('/') || text == "~" || text.starts_with("~/");
}

}  // namespace

bool isApplicationItem(const std::string& path) {
  return path.ends_with(kEntrySuffix) ? !isFolder(path) : path.ends_with(kFolderSuffix) && isFolder(path);
}

Result<InstalledApplication> applicationAt(const std::string& path, const ApplicationPlaces& places) {
  const Result<std::string> item = existingItem(path);
  if (!item) {
    return item.error();
  }
  std::optional<InstalledApplication> application;
  if (isFolder(item.value())) {
    application = applicationInFolder(item.value());
  } else if (item.value().ends_with(kEntrySuffix)) {
    application = applicationOfEntry(item.value(), places.search);
  } else if (isProgram(item.value())) {
    application = applicationOf(item.value(), applicationName(item.value()));
  }
  return application
             ? Result<InstalledApplication>(std::move(*application))
             : phrasedError(ENOEXEC, {"cannot start %1: it is no application", {given(oneLine(path))}});
}

Result<InstalledApplication> findApplication(const std::string& identifier, const std::string& path,
                                             const ApplicationPlaces& places) {
  if (auto application = byIdentifier(identifier, places)) {
    return std::move(*application);
  }
  if (isPath(path)) {
    return applicationAt(path, places);
  }
  if (auto application = byName(path, places)) {
    return std::move(*application);
  }
  const std::string& wanted = path.empty() ? identifier : path;
  if (wanted.empty()) {
    return Error{ENOENT, "no application is chosen", {}};
  }
  return phrasedError(ENOENT, {"the application %1 is not installed", {given(oneLine(wanted))}});
}

}  // namespace veltrix
