#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "helper/commands/command_session.h"
#include "helper/commands/command_table.h"
#include "helper/desktop/application_finder.h"
#include "helper/desktop/application_starter.h"
#include "helper/desktop/desktop_settings.h"
#include "helper/desktop/item_opener.h"
#include "helper/desktop/program_starter.h"
#include "helper/desktop/script_runner.h"

namespace veltrix {

// What a launcher works with. Loop and connection must outlive it.
struct LauncherSurroundings {
  sd_event* loop = nullptr;
  sd_bus* bus = nullptr;  // the session's; null for none
  std::uint8_t desktop = kOnOther;
  std::string resourceFolder;         // of the product; its programs lie at a known place from there
  ScriptRunner::Failed scriptFailed;  // called from the loop when a script has not ended well
  ProgramStarter::Output output{};    // empty for the journal
  // An opener that still runs after this has done its work, and so has any other program.
  std::chrono::microseconds grace = std::chrono::seconds(2);
  // After this gsettings does not answer.
  std::chrono::microseconds settingGrace = std::chrono::seconds(5);
};

// Starts and opens things in the session. Nothing goes through a shell but the text of a script. What it has
// started outlives it.
class DesktopLauncher final : public Launcher {
 public:
  explicit DesktopLauncher(LauncherSurroundings surroundings);

  void start(const ProgramAttempt& attempt, Ended ended) override;
  void change(const SettingAttempt& attempt, Ended ended) override;
  void readShortcut(const ShortcutAttempt& attempt, ShortcutRead read) override;
  void open(Place place, Ended ended) override;
  void openItem(const std::string& path, Ended ended) override;
  void launch(const std::string& identifier, const std::string& path, Ended ended) override;
  void openUrl(const std::string& url, Ended ended) override;
  void runScript(const std::string& text, Ended ended) override;

 private:
  ApplicationPlaces places() const;
  void openFolder(const std::string& folder, const Ended& ended);
  void startDefault(Place place, const Ended& ended);
  void startFromTable(Place place, const Ended& ended);
  void startTerminal(const Ended& ended);
  void startTrackballSettings(const Ended& ended);

  LauncherSurroundings fSurroundings;
  ProgramStarter fStarter;
  ApplicationStarter fApplications;
  ItemOpener fOpener;
  ScriptRunner fScripts;
  DesktopSettings fSettings;
};

}  // namespace veltrix
