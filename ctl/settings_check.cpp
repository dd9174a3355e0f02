#include <iostream>
#include <memory>

#include "ctl/document_file.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "ctl/settings_commands.h"
#include "settings/document_check.h"

namespace veltrix::ctl {
namespace {

Json jsonOfProblems(const std::string& path, const std::vector<DocumentProblem>& problems) {
  Json list = Json::array();
  for (const auto& problem : problems) {
    list.push_back({{"place", problem.place}, {"reason", problem.reason}});
  }
  return {{"file", path}, {"valid", problems.empty()}, {"problems", list}};
}

int check(const std::string& name, const Context& context) {
  const auto file = readSettings(name);
  if (!file.document) {
    return file.exitCode;
  }
  const auto problems = checkSettingsDocument(file.document->root);
  if (context.json) {
    std::cout << jsonText(jsonOfProblems(file.path, problems));
  } else {
    for (const auto& problem : problems) {
      std::cout << file.path << ": " << (problem.place.empty() ? "" : problem.place + ": ") << problem.reason
                << '\n';
    }
    std::cout << (problems.empty() ? file.path + ": no problems\n" : "");
  }
  return problems.empty() ? kDone : kNotFound;
}

}  // namespace

void addSettingsCheckCommand(CommandLine settings, Context& context) {
  auto command = settings.addCommand(
      "check", "List every problem of a settings file with its place; the exit code is 1 when there is one");
  auto file = std::make_shared<std::string>();
  command.addOption("FILE", *file, "A settings file; the user's own by default");
  command.does([&context, file] { context.exitCode = check(*file, context); });
}

}  // namespace veltrix::ctl
