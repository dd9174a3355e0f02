#include <iomanip>
#include <iostream>

#include "ctl/command_catalogue.h"
#include "ctl/commands.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"

namespace veltrix::ctl {
namespace {

constexpr int kCodeWidth = 5;

Json jsonOfCategory(const CommandTree& tree, std::int32_t category) {
  Json commands = Json::array();
  for (std::int32_t row = 0; row < tree.commandCount(category); ++row) {
    const std::int32_t code = tree.commandAt(category, row);
    commands.push_back({{"command", code},
                        {"name", tree.commandTitle(category, row, {}, asItStands)},
                        {"kind", kindName(code)}});
  }
  return {{"category", tree.categoryTitle(category, asItStands)}, {"commands", commands}};
}

void printCategory(const CommandTree& tree, std::int32_t category) {
  std::cout << (category == 0 ? "" : "\n") << tree.categoryTitle(category, asItStands) << '\n';
  for (std::int32_t row = 0; row < tree.commandCount(category); ++row) {
    std::cout << std::setw(kCodeWidth) << tree.commandAt(category, row) << "  "
              << tree.commandTitle(category, row, {}, asItStands) << '\n';
  }
}

int run(const Context& context) {
  const auto tree = commandCatalogue();
  if (tree.categoryCount() == 0) {
    return fail(kNotFound, "the catalogue of commands cannot be read");
  }
  Json json = Json::array();
  for (std::int32_t category = 0; category < tree.categoryCount(); ++category) {
    if (context.json) {
      json.push_back(jsonOfCategory(tree, category));
    } else {
      printCategory(tree, category);
    }
  }
  if (context.json) {
    std::cout << jsonText(json);
  }
  return kDone;
}

}  // namespace

void addCommandsCommand(CommandLine app, Context& context) {
  auto command = app.addCommand("commands", "List every command that a button can be given");
  command.does([&context] { context.exitCode = run(context); });
}

}  // namespace veltrix::ctl
