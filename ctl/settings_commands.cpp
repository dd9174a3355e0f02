#include <CLI/CLI.hpp>

#include "ctl/commands.h"
#include "ctl/settings_commands.h"

namespace veltrix::ctl {

void addSettingsCommands(CLI::App& app, Context& context) {
  auto* settings = app.add_subcommand("settings", "Look at the settings file and change it");
  settings->require_subcommand(1);
  settings->fallthrough();
  addSettingsReadingCommands(*settings, context);
  addSettingsCheckCommand(*settings, context);
  addSettingsChangingCommands(*settings, context);
  addSettingsExportCommand(*settings, context);
  addSettingsImportCommand(*settings, context);
}

}  // namespace veltrix::ctl
