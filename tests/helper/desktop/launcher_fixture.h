#pragma once

#include "helper/desktop/launcher.h"
#include "tests/helper/desktop/desktop_fixture.h"

namespace veltrix::testing {

// A launcher on a desktop of the test's own.
class LauncherFixture : public DesktopFixture {
 protected:
  void makeLauncher(std::uint8_t desktop) {
    LauncherSurroundings surroundings;
    surroundings.loop = fLoop.get();
    surroundings.desktop = desktop;
    surroundings.resourceFolder = fFolder / "lib/veltrix";
    surroundings.scriptFailed = [this](const Error& error) { fFailures.push_back(error.message); };
    surroundings.output = journal();
    surroundings.grace = std::chrono::seconds(20);
    fLauncher = std::make_unique<DesktopLauncher>(std::move(surroundings));
  }
  LauncherFixture() { makeLauncher(kOnGnome); }

  Status open(Place place) {
    return outcomeOf([&](Ended ended) { fLauncher->open(place, ended); });
  }
  Status openItem(const std::string& path) {
    return outcomeOf([&](Ended ended) { fLauncher->openItem(path, ended); });
  }
  Status openUrl(const std::string& url) {
    return outcomeOf([&](Ended ended) { fLauncher->openUrl(url, ended); });
  }
  Status launch(const std::string& identifier, const std::string& path) {
    return outcomeOf([&](Ended ended) { fLauncher->launch(identifier, path, ended); });
  }
  Status runScript(const std::string& text) {
    return outcomeOf([&](Ended ended) { fLauncher->runScript(text, ended); });
  }

  std::vector<std::string> fFailures;
  std::unique_ptr<DesktopLauncher> fLauncher;
};

}  // namespace veltrix::testing
