#include <QApplication>
#include <QLocale>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "host/fusion_look.h"
#include "host/uninstall.h"
#include "host/uninstaller_options.h"
#include "host/uninstaller_window.h"
#include "platform/bundle.h"

namespace {

using namespace veltrix;

constexpr const char* kName = "Veltrix Uninstaller";
constexpr const char* kUsage =
    "usage: \"Veltrix Uninstaller\" [--yes] [--remove-settings]\n"
    "\n"
    "Closes the settings window, stops the helper, and takes it from the programs that start with your\n"
    "session. The package itself is removed by: %s\n"
    "\n"
    "  --yes              do it at once, without a window\n"
    "  --remove-settings  remove your settings, too; with a window, tick the box\n"
    "  -h, --help         print this and do nothing\n"
    "\n"
    "Exit codes: 0 done; 1 canceled, or something could not be done; 2 bad usage, or no display for a "
    "window.\n";

enum ExitCode { kAllDone = 0, kNotDone = 1, kBadUsage = 2 };

int runInTerminal(const Bundle& bundle, const UninstallPlan& plan) {
  std::setlocale(LC_MESSAGES, "");  // the toolkit does this for a window
  const auto outcomes = uninstall(plan);
  for (const UninstallOutcome& outcome : outcomes) {
    std::FILE* const stream = outcome.problem.empty() ? stdout : stderr;
    std::fprintf(stream, "%s\n", sentenceFor(outcome, plan, bundle).c_str());
  }
  const std::string advice =
      bundle.localizedString("To remove the programs themselves, type this in a terminal:", "", kStringTable);
  std::printf("%s\n  %s\n", advice.c_str(), kPackageRemoval);
  return allDone(outcomes) ? kAllDone : kNotDone;
}

bool hasDisplay() {
  for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && value[0] != '\0') {
      return true;
    }
  }
  return false;
}

int runInWindow(int argc, char** argv, const Bundle& bundle, const UninstallPlan& plan) {
  QApplication application(argc, argv);
  mendFusion();
  QApplication::setApplicationDisplayName("Veltrix");
  QApplication::setDesktopFileName("com.aldmoor.veltrix");
  QApplication::setLayoutDirection(QLocale().textDirection());
  UninstallerWindow window(bundle, plan);
  return window.exec() == QDialog::Accepted ? kAllDone : kNotDone;
}

}  // namespace

int main(int argc, char** argv) {
  std::string problem;
  const auto options = parseUninstallerOptions({argv + 1, argv + argc}, &problem);
  if (!options) {
    std::fprintf(stderr, "%s: %s\nTry --help.\n", kName, problem.c_str());
    return kBadUsage;
  }
  if (options->help) {
    std::printf(kUsage, kPackageRemoval);
    return kAllDone;
  }
  const Bundle bundle = Bundle::standard();
  const UninstallPlan plan = standardUninstallPlan(bundle, options->removeSettings);
  if (options->yes) {
    return runInTerminal(bundle, plan);
  }
  if (!hasDisplay()) {
    std::fprintf(stderr, "%s: there is no display to ask on, and --yes was not given; nothing was done\n",
                 kName);
    return kBadUsage;
  }
  return runInWindow(argc, argv, bundle, plan);
}
