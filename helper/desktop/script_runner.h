#pragma once

#include <functional>
#include <memory>
#include <string>

#include "helper/desktop/program_starter.h"

namespace veltrix {

inline constexpr std::size_t kMostScripts = 8;                      // at once
inline constexpr const char* kScriptIdentifier = "veltrix-script";  // of their lines in the journal

// Runs the texts of scripts in the home folder. A text is given to its interpreter as a file that nobody but
// the user can read and that goes when the script has ended, or the object does: the script's text is in no
// list of processes, and its standard input is free.
class ScriptRunner {
 public:
  using Failed = std::function<void(const Error& error)>;

  // `failed` is called from the loop for a script that ends with something else than the exit status 0.
  // `starter` must outlive the object.
  ScriptRunner(ProgramStarter& starter, Failed failed);
  ~ScriptRunner();
  ScriptRunner(const ScriptRunner&) = delete;
  ScriptRunner& operator=(const ScriptRunner&) = delete;

  // Returns when the interpreter has been executed or could not be. No more than kMostScripts run at once.
  Status run(const std::string& text);

 private:
  struct State;
  std::shared_ptr<State> fState;
};

}  // namespace veltrix
