#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>

#include "ctl/document_changes.h"
#include "ctl/document_file.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "ctl/settings_commands.h"
#include "ctl/terminal_store.h"
#include "ctl/value_text.h"
#include "platform/atomic_file.h"
#include "settings/document_check.h"
#include "settings/settings_keys.h"
#include "settings/settings_merge.h"

namespace veltrix::ctl {
namespace {

constexpr const char* kCopySuffix = ".before-import";
constexpr int kMostCopies = 10000;
constexpr const char* kUnchanged = "nothing was changed";

struct Arguments {
  std::string path;
  bool dryRun = false;
};

// kDone, or the exit code after all problems have been said.
int checkDocument(const DocumentFile& file) {
  const auto problems = checkSettingsDocument(file.document->root);
  for (const auto& problem : problems) {
    note(file.path + ": " + (problem.place.empty() ? "" : problem.place + ": ") + problem.reason);
  }
  if (problems.empty() && isUsableDocument(file.root())) {
    return kDone;
  }
  return fail(kNotFound, file.path + ": cannot serve as settings; " + kUnchanged);
}

// Copies the settings file to a name beside it that is free, which is returned; empty when there is no file.
Result<std::string> keepCopy(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    return std::string();
  }
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  for (int number = 1;; ++number) {
    const std::string copy = path + kCopySuffix + (number == 1 ? "" : "." + std::to_string(number));
    const Status written = writeNewFileAtomically(copy, bytes);
    if (written) {
      return copy;
    }
    if (written.error().code != EEXIST || number == kMostCopies) {
      return written.error();
    }
  }
}

std::string textOf(const plist::Value& value) {
  return value.isMissing() ? "(none)" : quotedValueText(value);
}

void report(const std::vector<DocumentChange>& changes, const std::string& path, const std::string& copy,
            const Arguments& arguments, const Context& context) {
  Json list = Json::array();
  std::string text;
  for (const auto& [place, before, after] : changes) {
    list.push_back({{"place", place}, {"old", jsonOf(before)}, {"new", jsonOf(after)}});
    text += place + ": " + textOf(before) + " -> " + textOf(after) + "\n";
  }
  if (context.json) {
    std::cout << jsonText({{"file", path},
                           {"changed", !arguments.dryRun && !changes.empty()},
                           {"changes", list},
                           {"copy", copy.empty() ? Json() : Json(copy)}});
    return;
  }
  text += changes.empty()    ? "These are the settings in force; nothing was changed.\n"
          : arguments.dryRun ? "Nothing was changed.\n"
          : copy.empty()     ? "Changed " + path + ".\n"
                             : "Changed " + path + "; the old settings are kept in " + copy + ".\n";
  std::cout << text;
}

int importFrom(const Arguments& arguments, const Context& context) {
  const auto file = readSettings(arguments.path);
  if (!file.document) {
    return file.exitCode;
  }
  if (const int problem = checkDocument(file); problem != kDone) {
    return problem;
  }
  const auto current = readCurrentSettings(kUnchanged);
  if (!current.document) {
    return current.exitCode;
  }
  addFactorySettings(file.root());
  file.root().remove(keys::kSupport);  // what made a report of the settings
  const auto changes = changesBetween(current.document->root, file.document->root);
  if (changes.empty() || arguments.dryRun) {
    report(changes, current.path, {}, arguments, context);
    return kDone;
  }
  const auto copy = keepCopy(current.path);
  if (!copy) {
    return fail(kNotFound,
                "no copy of the old settings could be kept: " + copy.error().message + "; " + kUnchanged);
  }
  TerminalStore store;
  if (const int problem = store.saveInstead(file.root()); problem != kDone) {
    std::error_code ignored;
    std::filesystem::remove(copy.value(), ignored);
    return problem;
  }
  report(changes, current.path, copy.value(), arguments, context);
  return kDone;
}

}  // namespace

void addSettingsImportCommand(CommandLine settings, Context& context) {
  auto command = settings.addCommand(
      "import",
      "Take the settings of a file instead of one's own, of which a copy is kept; lists the changes");
  auto arguments = std::make_shared<Arguments>();
  command.addOption("FILE", arguments->path, "A settings file without problems (see \"check\")").required();
  command.addFlag("--dry-run", arguments->dryRun, "Only list what would change");
  command.does([&context, arguments] { context.exitCode = importFrom(*arguments, context); });
}

}  // namespace veltrix::ctl
