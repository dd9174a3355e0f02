#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>

#include "helper/desktop/launcher.h"
#include "helper/desktop/mime_applications.h"
#include "helper/desktop/place_table.h"
#include "helper/desktop/user_folders.h"
#include "platform/detached_program.h"
#include "platform/user_paths.h"

// How the launcher opens the places that nobody has to choose.
namespace veltrix {

namespace {

constexpr const char* kSettingsProgram = "veltrix-settings";
constexpr std::string_view kEntrySuffix = ".desktop";

// The types whose default application a place stands for, the telling one first.
std::vector<std::string_view> typesOf(Place place) {
  switch (place) {
    case Place::kBrowser:
      return {"x-scheme-handler/https", "x-scheme-handler/http", "text/html"};
    case Place::kMail:
      return {"x-scheme-handler/mailto"};
    case Place::kFileManager:
      return {"inode/directory"};
    default:
      return {};
  }
}

const char* noneIsInstalled(Place place) {
  switch (place) {
    case Place::kBrowser:
      return "no web browser is installed";
    case Place::kMail:
      return "no mail program is installed";
    case Place::kFileManager:
      return "no file manager is installed";
    case Place::kTerminal:
      return "no terminal is installed";
    case Place::kCalculator:
      return "no calculator is installed";
    case Place::kSystemSettings:
      return "no settings program of this desktop is installed";
    default:
      return "no such program is installed";
  }
}

Status noneFor(Place place) {
  return Error{ENOENT, noneIsInstalled(place), {}};
}

}  // namespace

void DesktopLauncher::open(Place place, Ended ended) {
  switch (place) {
    case Place::kBrowser:
    case Place::kMail:
    case Place::kFileManager:
      startDefault(place, ended);
      return;
    case Place::kTerminal:
      startTerminal(ended);
      return;
    case Place::kCalculator:
    case Place::kSystemSettings:
      startFromTable(place, ended);
      return;
    case Place::kHome:
      openFolder(homeDirectory(), ended);
      return;
    case Place::kDocuments:
      openFolder(userFolder("DOCUMENTS", "Documents"), ended);
      return;
    case Place::kDownloads:
      openFolder(userFolder("DOWNLOAD", "Downloads"), ended);
      return;
    case Place::kTrackballSettings:
      startTrackballSettings(ended);
      return;
  }
}

void DesktopLauncher::openFolder(const std::string& folder, const Ended& ended) {
  if (folder.empty()) {
    ended(Error{ENOENT, "there is no home folder", {}});
    return;
  }
  openItem(folder, ended);
}

void DesktopLauncher::startDefault(Place place, const Ended& ended) {
  const ApplicationSearch search = standardApplicationSearch();
  const std::vector<std::string> settings = configDirectories();
  for (const std::string_view type : typesOf(place)) {
    if (const auto application = defaultApplication(type, search, settings)) {
      fApplications.start(*application, ended);
      return;
    }
  }
  ended(noneFor(place));
}

void DesktopLauncher::startFromTable(Place place, const Ended& ended) {
  const ApplicationSearch search = standardApplicationSearch();
  for (const PlaceProgram& row : placePrograms()) {
    if (row.place != place || (row.desktops & fSurroundings.desktop) == 0) {
      continue;
    }
    const std::string_view name = row.program;
    if (name.ends_with(kEntrySuffix)) {
      const auto application =
          installedApplication(name.substr(0, name.size() - kEntrySuffix.size()), search);
      if (application) {
        fApplications.start(*application, ended);
        return;
      }
    } else if (const std::string path = programInPath(name); !path.empty()) {
      Program program;
      program.arguments = {path};
      ended(fStarter.start(program));
      return;
    }
  }
  ended(noneFor(place));
}

void DesktopLauncher::startTerminal(const Ended& ended) {
  Program program;
  program.arguments = terminalArguments(fSurroundings.desktop, {});
  ended(program.arguments.empty() ? noneFor(Place::kTerminal) : fStarter.start(program));
}

// The program that was installed with this helper, not another one that PATH may lead to first.
void DesktopLauncher::startTrackballSettings(const Ended& ended) {
  const std::string beside = fSurroundings.resourceFolder + "/../../bin/" + kSettingsProgram;
  const bool isThere = !fSurroundings.resourceFolder.empty() && access(beside.c_str(), X_OK) == 0;
  Program program;
  program.arguments = {isThere ? beside : kSettingsProgram};
  ended(fStarter.start(program));
}

}  // namespace veltrix
