#pragma once

#include "ctl/command_line.h"

// Each function adds one family of commands with their options and help. A command leaves its exit code in
// `context` when the parser calls it.
namespace veltrix::ctl {

struct Context {
  bool json = false;
  int exitCode = 0;
};

void addDevicesCommand(CommandLine app, Context& context);
void addStatusCommand(CommandLine app, Context& context);
void addMonitorCommand(CommandLine app, Context& context);
void addSettingsCommands(CommandLine app, Context& context);
void addButtonCommand(CommandLine app, Context& context);
void addCommandsCommand(CommandLine app, Context& context);
void addMatchCommand(CommandLine app, Context& context);
void addFindCommand(CommandLine app, Context& context);
void addRecordCommand(CommandLine app, Context& context);
void addMergeCommand(CommandLine app, Context& context);
void addConvertCommand(CommandLine app, Context& context);
void addInformationCommand(CommandLine app, Context& context);
void addKeynameCommand(CommandLine app, Context& context);
void addKeytableCommand(CommandLine app, Context& context);

}  // namespace veltrix::ctl
