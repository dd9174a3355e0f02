#pragma once

#include <string>
#include <vector>

#include "platform/application_search.h"
#include "platform/installed_applications.h"
#include "util/result.h"

namespace veltrix {

// Where applications are.
struct ApplicationPlaces {
  ApplicationSearch search;
  std::vector<std::string> folders;  // that hold application folders ("Name.app")
};

// Whether a path is that of a desktop entry or an application folder: something that is started, not opened.
bool isApplicationItem(const std::string& path);

// What the absolute path of a desktop entry, an application folder or a program starts.
Result<InstalledApplication> applicationAt(const std::string& path, const ApplicationPlaces& places);

// What an action names: by `identifier` the absolute path of an application, the identifier of a desktop
// entry, or that of an application folder (CFBundleIdentifier); when that leads to none, by `path` a path, or
// the name of an application.
Result<InstalledApplication> findApplication(const std::string& identifier, const std::string& path,
                                             const ApplicationPlaces& places);

}  // namespace veltrix
