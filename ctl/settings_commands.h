#pragma once

#include "ctl/commands.h"

namespace veltrix::ctl {

// The commands below "settings", by what they do to the file.
void addSettingsReadingCommands(CommandLine settings, Context& context);   // path, show, get
void addSettingsCheckCommand(CommandLine settings, Context& context);      // check
void addSettingsChangingCommands(CommandLine settings, Context& context);  // set, reset
void addSettingsExportCommand(CommandLine settings, Context& context);     // export
void addSettingsImportCommand(CommandLine settings, Context& context);     // import

}  // namespace veltrix::ctl
