#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace veltrix {

class Bundle;

// What is taken back of an installation for one user. The files of the package itself are not touched.
struct UninstallPlan {
  std::string resourceFolder;  // of the installation
  std::string settingsPath;    // the user's file; empty without a home folder
  bool removeSettings = false;
  std::chrono::milliseconds patience{5000};  // for a process that has been asked to end
};

// The plan for the programs of `bundle` and this user.
UninstallPlan standardUninstallPlan(const Bundle& bundle, bool removeSettings);

enum class UninstallStep { kWindow, kHelper, kLoginItem, kSettings };

// What became of one step: how many windows, helpers, login items or files are gone, and what went wrong.
struct UninstallOutcome {
  UninstallStep step;
  unsigned count = 0;
  std::string problem;  // empty when all went well
};

// Closes the window first, because it writes the settings when it closes; stops the helper; takes it from the
// programs that start with the session; and removes the settings with the copies beside them when that is
// planned. A step that fails does not keep the later ones from being done, but settings that an open window
// would write again stay. Takes as long as the processes need to end.
std::vector<UninstallOutcome> uninstall(const UninstallPlan& plan);

bool allDone(const std::vector<UninstallOutcome>& outcomes);

// The command that removes the programs themselves.
inline constexpr const char* kPackageRemoval = "sudo apt remove veltrix";

// A sentence on an outcome, in the user's language.
std::string sentenceFor(const UninstallOutcome& outcome, const UninstallPlan& plan, const Bundle& bundle);

}  // namespace veltrix
