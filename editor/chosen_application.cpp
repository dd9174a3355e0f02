#include "editor/chosen_application.h"

#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/application_folder.h"
#include "platform/property_list_io.h"
#include "util/path_text.h"

namespace veltrix {

namespace {

constexpr std::string_view kEntrySuffix = ".desktop";

std::string lastComponent(const std::string& path) {
  return path == "/" ? path : path.substr(path.rfind('/') + 1);
}

// The values of the application folder's Info.plist; null when there is none that can be read.
plist::Dictionary folderInformation(const std::string& path) {
  const auto document = plist::readFile(path + "/Contents/Info.plist");
  return document ? document.value().root.asDictionary() : plist::Dictionary();
}

bool isProgram(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(path, ignored) && access(path.c_str(), X_OK) == 0;
}

}  // namespace

ChosenApplication chosenApplication(const InstalledApplication& application) {
  return {std::string(withoutApplicationSuffix(application.name)),
          application.identifier.empty() ? application.path : application.identifier};
}

ChosenApplication chosenApplication(const std::string& path, const ApplicationSearch& search) {
  const std::string place = withoutFinalSlashes(path);
  if (place.ends_with(kEntrySuffix)) {
    if (const auto application = applicationOfEntry(place, search)) {
      return chosenApplication(*application);
    }
  }
  ChosenApplication chosen;
  chosen.name = lastComponent(place);
  if (const plist::Dictionary information = folderInformation(place)) {
    const plist::Value name = information.get("CFBundleName");
    chosen.name = name.stringIf() != nullptr ? *name.stringIf() : chosen.name;
    chosen.identifier = information.stringFor("CFBundleIdentifier");
  } else if (isProgram(place)) {
    chosen.identifier = place;
  }
  chosen.name = std::string(withoutApplicationSuffix(chosen.name));
  return chosen;
}

}  // namespace veltrix
