#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "ctl/commands.h"
#include "ctl/outcome.h"

namespace {

constexpr const char* kDescription =
    "Looks at and changes the settings of Veltrix trackballs from a terminal or a script.\n"
    "Ids and versions are hexadecimal, as lsusb prints them.";
constexpr const char* kFooter =
    "Exit codes: 0 done; 1 not found, or a rule says no; 2 bad usage or bad input.\n"
    "Messages go to standard error and data to standard output.";

int run(int argc, char** argv) {
  using namespace veltrix::ctl;
  CLI::App app(kDescription, "veltrixctl");
  Context context;
  app.footer(kFooter);
  app.require_subcommand(1);
  app.fallthrough();
  app.add_flag("--json", context.json, "Print data as JSON");
  CommandLine commands(app);
  addDevicesCommand(commands, context);
  addStatusCommand(commands, context);
  addMonitorCommand(commands, context);
  addSettingsCommands(commands, context);
  addButtonCommand(commands, context);
  addCommandsCommand(commands, context);
  addMatchCommand(commands, context);
  addFindCommand(commands, context);
  addRecordCommand(commands, context);
  addMergeCommand(commands, context);
  addConvertCommand(commands, context);
  addInformationCommand(commands, context);
  addKeynameCommand(commands, context);
  addKeytableCommand(commands, context);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
      return app.exit(error);  // help was asked for
    }
    // Whatever else is wrong, a word that means nothing is the likelier mistake.
    const auto unknown = app.remaining(true);
    const std::string reason =
        unknown.empty() ? error.what() : "\"" + unknown.front() + "\" means nothing here";
    return fail(kBadInput, reason + "\nTry 'veltrixctl --help'.");
  }
  return context.exitCode;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    return veltrix::ctl::fail(veltrix::ctl::kBadInput, error.what());
  }
}
