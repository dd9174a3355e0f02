
#include "ctl/settings_commands.h"
#include "ctl/commands.h"

namespace veltrix::ctl {

void addSettingsCommands(CommandLine app, Context& context) {
  auto settings = app.addCommand("settings", "Look at the settings file and change it");
  settings.takesCommands(1, 1);
  addSettingsReadingCommands(settings, context);
  addSettingsCheckCommand(settings, context);
  addSettingsChangingCommands(settings, context);
  addSettingsExportCommand(settings, context);
  addSettingsImportCommand(settings, context);
}

}  // namespace veltrix::ctl
