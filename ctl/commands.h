#pragma once

namespace CLI {
class App;
}

// Each function adds one family of commands with their options and help. A command leaves its exit code in
// `context` when the parser calls it.
namespace veltrix::ctl {

struct Context {
  bool json = false;
  int exitCode = 0;
};

void addDevicesCommand(CLI::App& app, Context& context);
void addStatusCommand(CLI::App& app, Context& context);
void addMonitorCommand(CLI::App& app, Context& context);
void addSettingsCommands(CLI::App& app, Context& context);
void addButtonCommand(CLI::App& app, Context& context);
void addCommandsCommand(CLI::App& app, Context& context);
void addMatchCommand(CLI::App& app, Context& context);
void addFindCommand(CLI::App& app, Context& context);
void addRecordCommand(CLI::App& app, Context& context);
void addMergeCommand(CLI::App& app, Context& context);
void addConvertCommand(CLI::App& app, Context& context);
void addInformationCommand(CLI::App& app, Context& context);
void addKeynameCommand(CLI::App& app, Context& context);
void addKeytableCommand(CLI::App& app, Context& context);

}  // namespace veltrix::ctl
