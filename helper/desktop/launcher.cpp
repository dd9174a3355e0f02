#include "helper/desktop/launcher.h"

#include <utility>

#include "helper/desktop/gsettings.h"
#include "helper/desktop/item_path.h"
#include "helper/desktop/printed_shortcut.h"
#include "helper/desktop/url_check.h"
#include "platform/user_paths.h"

namespace veltrix {

DesktopLauncher::DesktopLauncher(LauncherSurroundings surroundings)
    : fSurroundings(std::move(surroundings)),
      fStarter(fSurroundings.loop, fSurroundings.output),
      fApplications(fStarter, fSurroundings.bus, fSurroundings.desktop),
      fOpener(fStarter, fSurroundings.grace),
      fScripts(fStarter, fSurroundings.scriptFailed),
      fSettings(fStarter, fSurroundings.settingGrace) {}

void DesktopLauncher::start(const ProgramAttempt& attempt, Ended ended) {
  Program program;
  for (const char* const argument : attempt.arguments) {
    if (argument == nullptr) {
      break;
    }
    program.arguments.emplace_back(argument);
  }
  fStarter.startAndWatch(program, fSurroundings.grace, std::move(ended));
}

void DesktopLauncher::change(const SettingAttempt& attempt, Ended ended) {
  fSettings.change(attempt, std::move(ended));
}

void DesktopLauncher::readShortcut(const ShortcutAttempt& attempt, ShortcutRead read) {
  runGsettings(
      fStarter, {"get", attempt.schema, attempt.key}, fSurroundings.settingGrace,
      [read = std::move(read)](const Result<std::string>& printed) {
        const auto stroke = printed ? shortcutIn(printed.value()) : std::nullopt;
        const Error reason = printed ? Error{0, "the desktop has no keys for it", {}} : printed.error();
        read(stroke ? Result<KeyStroke>(*stroke) : reason);
      });
}

void DesktopLauncher::openItem(const std::string& path, Ended ended) {
  const Result<std::string> item = existingItem(path);
  if (!item) {
    ended(item.error());
  } else if (isApplicationItem(item.value())) {
    launch("", item.value(), std::move(ended));
  } else {
    fOpener.open(item.value(), std::move(ended));
  }
}

void DesktopLauncher::launch(const std::string& identifier, const std::string& path, Ended ended) {
  const Result<InstalledApplication> application = findApplication(identifier, path, places());
  if (!application) {
    ended(application.error());
    return;
  }
  fApplications.start(application.value(), std::move(ended));
}

void DesktopLauncher::openUrl(const std::string& url, Ended ended) {
  const Status status = checkUrl(url);
  if (!status) {
    ended(status);
    return;
  }
  fOpener.open(url, std::move(ended));
}

void DesktopLauncher::runScript(const std::string& text, Ended ended) {
  ended(fScripts.run(text));
}

// Looked for anew each time: applications are installed and removed while the session lasts.
ApplicationPlaces DesktopLauncher::places() const {
  const std::string home = homeDirectory();
  ApplicationPlaces places{standardApplicationSearch(), {}};
  if (!home.empty()) {
    places.folders.push_back(home + "/Applications");
  }
  places.folders.insert(places.folders.end(), {"/Applications", "/opt"});
  if (!fSurroundings.resourceFolder.empty()) {
    places.folders.push_back(fSurroundings.resourceFolder);
  }
  return places;
}

}  // namespace veltrix
