#pragma once

#include "ctl/commands.h"

namespace veltrix::ctl {

// The commands below "settings", by what they do to the file.
void addSettingsReadingCommands(CLI::App& settings, Context& context);   // path, show, get
void addSettingsCheckCommand(CLI::App& settings, Context& context);      // check
void addSettingsChangingCommands(CLI::App& settings, Context& context);  // set, reset
void addSettingsExportCommand(CLI::App& settings, Context& context);     // export
void addSettingsImportCommand(CLI::App& settings, Context& context);     // import

}  // namespace veltrix::ctl
