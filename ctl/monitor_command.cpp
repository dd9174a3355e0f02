#include <iostream>

#include "ctl/command_catalogue.h"
#include "ctl/commands.h"
#include "ctl/driver_words.h"
#include "ctl/helper_watch.h"
#include "ctl/outcome.h"

namespace veltrix::ctl {
namespace {

int run(const Context& context) {
  CommandTitles titles;
  HelperWatchCallbacks callbacks;
  callbacks.buttonUsed = [&](const ButtonUse& use) {
    const std::string& title = titles.of(use.command);
    // Line by line: somebody watches.
    std::cout << (context.json ? monitorJsonLine(use, title) : monitorLine(use, title)) << std::flush;
  };
  callbacks.driverChanged = [](const std::string& state, const std::string& version, int error) {
    note("driver: " + driverText(state, version, error));
  };
  const Status watched = watchHelper(callbacks);
  return watched ? kDone : fail(kNotFound, watched.error().message);
}

}  // namespace

void addMonitorCommand(CommandLine app, Context& context) {
  app.addCommand("monitor", "Show each use of a button as it happens, until Ctrl+C; never what is typed")
      .does([&context] { context.exitCode = run(context); });
}

}  // namespace veltrix::ctl
