#include "host/uninstall.h"

#include <array>
#include <filesystem>
#include <optional>

#include "helperlink/login_item.h"
#include "platform/application_folder.h"
#include "platform/bundle.h"
#include "platform/program_processes.h"
#include "settings/settings_store.h"

namespace veltrix {

namespace {

namespace fs = std::filesystem;

// What the programs append to the settings file's name for a copy that they keep beside it.
constexpr std::array<const char*, 2> kCopies = {".rejected", ".before-import"};

std::string helperFolder(const UninstallPlan& plan) {
  return plan.resourceFolder + "/VeltrixHelper.app";
}

// <prefix>/bin for the resources in <prefix>/lib/veltrix.
std::string windowProgram(const UninstallPlan& plan) {
  return (fs::path(plan.resourceFolder).parent_path().parent_path() / "bin" / "veltrix-settings").string();
}

UninstallOutcome endAll(UninstallStep step, const std::string& program, const UninstallPlan& plan) {
  UninstallOutcome outcome{step, 0, {}};
  for (const ProcessSerialNumber& process : processesOfProgram(program)) {
    if (const Status ended = endProcess(process, plan.patience)) {
      ++outcome.count;
    } else {
      outcome.problem = ended.error().message;
    }
  }
  return outcome;
}

UninstallOutcome removeLoginItem(const UninstallPlan& plan) {
  std::uint32_t count = 0;
  const std::int32_t status = RemoveLoginItem(helperFolder(plan), std::nullopt, &count);
  return {UninstallStep::kLoginItem, count,
          status == 0 ? "" : "the list of these programs cannot be changed"};
}

bool isCopy(const std::string& name, const std::string& settings) {
  for (const char* suffix : kCopies) {
    const std::string copy = settings + suffix;
    if (name == copy || name.starts_with(copy + ".")) {
      return true;
    }
  }
  return false;
}

void removeFile(const fs::path& path, UninstallOutcome* outcome) {
  std::error_code error;
  outcome->count += fs::remove(path, error) ? 1U : 0U;
  if (error) {
    outcome->problem = path.string() + ": " + error.message();
  }
}

UninstallOutcome removeSettings(const UninstallPlan& plan) {
  UninstallOutcome outcome{UninstallStep::kSettings, 0, {}};
  const fs::path settings = plan.settingsPath;
  std::vector<fs::path> files = {settings};
  std::error_code error;
  for (fs::directory_iterator at(settings.parent_path(), error), end; !error && at != end;
       at.increment(error)) {
    if (isCopy(at->path().filename().string(), settings.filename().string())) {
      files.push_back(at->path());
    }
  }
  for (const fs::path& file : files) {
    removeFile(file, &outcome);
  }
  return outcome;
}

// The three sentences on a step: something was done, there was nothing to do, something went wrong.
struct Sentences {
  const char* done;
  const char* nothing;
  const char* problem;
};

constexpr std::array<Sentences, 4> kSentences = {{
    {"The settings window is closed.", "The settings window was not open.",
     "The settings window does not close: %1."},
    {"The helper is stopped.", "The helper was not running.", "The helper does not stop: %1."},
    {"The helper does not start with your session any more.", "The helper did not start with your session.",
     "The helper may still start with your session: %1."},
    {"Your settings are removed.", "You had no settings.", "Your settings could not be removed: %1."},
}};
constexpr const char* kSettingsKept = "Your settings are kept: %1.";

}  // namespace

UninstallPlan standardUninstallPlan(const Bundle& bundle, bool removeSettings) {
  UninstallPlan plan;
  plan.resourceFolder = bundle.resourcePath();
  plan.settingsPath = settingsFilePath();
  plan.removeSettings = removeSettings;
  return plan;
}

std::vector<UninstallOutcome> uninstall(const UninstallPlan& plan) {
  std::vector<UninstallOutcome> outcomes;
  outcomes.push_back(endAll(UninstallStep::kWindow, windowProgram(plan), plan));
  const bool windowIsOpen = !outcomes.front().problem.empty();
  outcomes.push_back(endAll(UninstallStep::kHelper, programOfApplication(helperFolder(plan)), plan));
  outcomes.push_back(removeLoginItem(plan));
  if (!plan.removeSettings || plan.settingsPath.empty()) {
    outcomes.push_back({UninstallStep::kSettings, 0, {}});
  } else if (windowIsOpen) {
    outcomes.push_back({UninstallStep::kSettings, 0, "the settings window is still open"});
  } else {
    outcomes.push_back(removeSettings(plan));
  }
  return outcomes;
}

bool allDone(const std::vector<UninstallOutcome>& outcomes) {
  for (const UninstallOutcome& outcome : outcomes) {
    if (!outcome.problem.empty()) {
      return false;
    }
  }
  return true;
}

std::string sentenceFor(const UninstallOutcome& outcome, const UninstallPlan& plan, const Bundle& bundle) {
  const Sentences& sentences = kSentences.at(static_cast<std::size_t>(outcome.step));
  std::error_code ignored;
  const bool keepsSettings = outcome.step == UninstallStep::kSettings && !plan.removeSettings &&
                             fs::exists(plan.settingsPath, ignored);
  const bool failed = !outcome.problem.empty();
  const char* key = failed              ? sentences.problem
                    : keepsSettings     ? kSettingsKept
                    : outcome.count > 0 ? sentences.done
                                        : sentences.nothing;
  std::string sentence = bundle.localizedString(key, "", kStringTable);
  if (const std::size_t place = sentence.find("%1"); place != std::string::npos) {
    sentence.replace(place, 2, failed ? outcome.problem : plan.settingsPath);
  }
  return sentence;
}

}  // namespace veltrix
