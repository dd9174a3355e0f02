#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "platform/event_loop.h"
#include "platform/program_start.h"
#include "util/result.h"

namespace veltrix {

// A program to be started, with the environment of this process (child_environment.h).
struct Program {
  std::vector<std::string> arguments;  // the program first: its path, or a name that is looked for in PATH
  std::string folder{};                // where it runs; empty for the home folder
  std::string identifier{};            // of its lines in the journal; empty for the program's name
  std::string title{};                 // what reasons call it; empty for the program's name
  int output = -1;                     // where its output goes in place of the journal; errors go there
  int extra = -1;                      // is kExtraDescriptor there
};

// Starts programs and collects them when they end. Programs go on when it ends.
class ProgramStarter {
 public:
  // How a program ended, from the loop: Done for the exit status 0, else the reason with the program's name.
  using Exit = std::function<void(const Status&)>;
  using Output = std::function<FileDescriptor(const std::string& identifier)>;

  // The loop must outlive the object.
  explicit ProgramStarter(sd_event* loop, Output output = {});
  ProgramStarter(const ProgramStarter&) = delete;
  ProgramStarter& operator=(const ProgramStarter&) = delete;

  // Returns when the program has been executed or could not be; then `exit` is never called.
  Status start(const Program& program, Exit exit = {});

  // Starts the program and tells how it went: how it ended, or that it is well when it still runs after
  // `grace`. `ended` may be called before this returns.
  void startAndWatch(const Program& program, std::chrono::microseconds grace, Exit ended);

  // Programs that run.
  std::size_t running() const { return fChildren.size(); }

  sd_event* loop() const { return fLoop; }

 private:
  struct Child {
    ProgramStarter* starter = nullptr;
    StartedProgram program;
    std::string name;
    Exit exit;
    EventSourceHandle watch;
    std::list<Child>::iterator place;
  };

  Status watch(StartedProgram program, std::string name, Exit exit);
  static int childEnded(sd_event_source* source, int descriptor, std::uint32_t events, void* child);

  sd_event* fLoop;
  Output fOutput;
  std::list<Child> fChildren;
};

}  // namespace veltrix
