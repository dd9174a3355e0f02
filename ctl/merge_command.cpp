#include <memory>

#include "ctl/commands.h"
#include "ctl/document_file.h"
#include "ctl/outcome.h"
#include "settings/settings_merge.h"

namespace veltrix::ctl {
namespace {

struct Arguments {
  std::string user;
  std::string factory;
  std::string output;
};

int run(const Arguments& arguments) {
  const auto user = readSettings(arguments.user);
  if (!user.document) {
    return user.exitCode;
  }
  const auto factory = readSettings(arguments.factory);
  if (!factory.document) {
    return factory.exitCode;
  }
  if (!isUsableDocument(user.root())) {
    return fail(kNotFound, arguments.user +
                               ": cannot serve as a user's settings: \"version\" must be above 1 and "
                               "\"devices\" must not be empty; nothing was written");
  }
  mergeFactorySettings(user.root(), factory.root());
  return writeOutput(arguments.output, plist::writeXml(user.root()));
}

}  // namespace

void addMergeCommand(CommandLine app, Context& context) {
  auto command = app.addCommand(
      "merge", "Add to a settings file what only the factory settings have, as every program does on start");
  auto arguments = std::make_shared<Arguments>();
  command.addOption("USER", arguments->user, "The user's settings").required();
  command.addOption("DEFAULTS", arguments->factory, "The factory settings").required();
  command.addOption("-o,--output", arguments->output, "The file to write, as XML").required();
  command.does([&context, arguments] { context.exitCode = run(*arguments); });
}

}  // namespace veltrix::ctl
