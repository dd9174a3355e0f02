#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "settings/settings_store.h"
#include "tests/support/property_list_files.h"
#include "tests/support/settings_documents.h"
#include "tests/support/temporary_folder.h"

namespace veltrix::testing {

// A store whose protected fields a test can see.
class OpenStore : public SettingsStore {
 public:
  using SettingsStore::fCurDeviceTab;
  using SettingsStore::fCurSettingsDict;
  using SettingsStore::fCurSettingsIndex;
  using SettingsStore::fPrefsDict;
  using SettingsStore::fSettingsArray;
  using SettingsStore::fSnippetsArray;
  using SettingsStore::SettingsStore;
};

// A store over files in a folder of its own, with a helper that notes its messages.
class StoreTest : public ::testing::Test {
 protected:
  SettingsEnvironment environment() {
    return {fSettingsPath, fDefaultsPath, [this] { return &fDevices; },
            [this](std::uint32_t message) {
              fMessages.push_back(message);
              return 0;
            }};
  }

  TemporaryFolder fFolder;
  std::string fHome = fFolder / "home";
  std::string fSettingsPath = fHome + "/Library/Preferences/com.aldmoor.veltrix.settings.plist";
  std::string fDefaultsPath = fFolder / "DefaultSettings.plist";
  VeltrixDeviceList fDevices{};
  std::vector<std::uint32_t> fMessages;
  OpenStore fStore{environment()};
};

}  // namespace veltrix::testing
