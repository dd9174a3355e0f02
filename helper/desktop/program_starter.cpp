#include "helper/desktop/program_starter.h"

#include <sys/epoll.h>

#include <cerrno>
#include <utility>

#include "helper/desktop/child_environment.h"
#include "helper/desktop/one_line.h"
#include "helper/desktop/program_output.h"
#include "platform/detached_program.h"
#include "platform/user_paths.h"
#include "util/phrase.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

std::string nameOf(const std::string& program) {
  return program.substr(program.rfind('/') + 1);
}

// Tells once how a program went: by its end or by the end of the grace, whichever comes first.
struct Verdict {
  ProgramStarter::Exit ended;
  EventSourceHandle timer;

  void tell(const Status& status) {
    timer.reset();
    if (const auto once = std::exchange(ended, nullptr)) {
      once(status);
    }
  }
};

int graceIsOver(sd_event_source* /*source*/, std::uint64_t /*time*/, void* verdict) {
  static_cast<Verdict*>(verdict)->tell(Done());
  return 0;
}

}  // namespace

ProgramStarter::ProgramStarter(sd_event* loop, Output output)
    : fLoop(loop), fOutput(output ? std::move(output) : Output(journalOutput)) {}

Status ProgramStarter::start(const Program& program, Exit exit) {
  ProgramStart start;
  start.arguments = program.arguments;
  const std::string named = start.arguments.empty() ? "" : start.arguments.front();
  const std::string path = named.find('/') == std::string::npos ? programInPath(named) : named;
  if (named.empty()) {
    return Error{ENOENT, "no program is named", {}};
  }
  if (path.empty()) {
    return phrasedError(ENOENT, {"%1 is not installed", {given(oneLine(named))}});
  }
  start.arguments.front() = path;
  const std::string name = nameOf(named);
  const FileDescriptor output = fOutput(program.identifier.empty() ? name : program.identifier);
  start.environment = childEnvironment();
  start.folder = program.folder.empty() ? homeDirectory() : program.folder;
  start.output = program.output >= 0 ? program.output : output.get();
  start.errors = output.get();
  start.extra = program.extra;
  Result<StartedProgram> started = startProgram(start);
  if (!started) {
    return systemError(started.error().code, "cannot start", oneLine(start.arguments.front()));
  }
  return watch(std::move(started.value()), program.title.empty() ? oneLine(name) : program.title,
               std::move(exit));
}

Status ProgramStarter::watch(StartedProgram program, std::string name, Exit exit) {
  Child& child = fChildren.emplace_back();
  child.starter = this;
  child.program = std::move(program);
  child.name = std::move(name);
  child.exit = std::move(exit);
  child.place = std::prev(fChildren.end());
  sd_event_source* source = nullptr;
  const int added = sd_event_add_io(fLoop, &source, child.program.process.get(), EPOLLIN, childEnded, &child);
  child.watch.reset(source);
  if (added < 0) {
    const std::string unwatched = child.name;
    fChildren.erase(child.place);
    return systemError(-added, "cannot watch", unwatched);
  }
  return Done();
}

int ProgramStarter::childEnded(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/,
                               void* child) {
  auto* const ended = static_cast<Child*>(child);
  Status status = collectProgram(ended->program);
  if (!status && status.error().code == EAGAIN) {
    return 0;
  }
  const Exit exit = std::move(ended->exit);
  if (!status) {
    // Of the titles the one is in the string tables that is no name.
    status = phrasedError(status.error().code,
                          {"%1 ended with %2", {{ended->name, {}}, phraseOf(status.error())}});
  }
  ended->starter->fChildren.erase(ended->place);
  if (exit) {
    exit(status);
  }
  return 0;
}

void ProgramStarter::startAndWatch(const Program& program, std::chrono::microseconds grace, Exit ended) {
  const auto verdict = std::make_shared<Verdict>();
  verdict->ended = std::move(ended);
  const Status started = start(program, [verdict](const Status& status) { verdict->tell(status); });
  if (!started) {
    verdict->tell(started);
    return;
  }
  sd_event_source* timer = nullptr;
  const int added =
      sd_event_add_time_relative(fLoop, &timer, CLOCK_MONOTONIC, static_cast<std::uint64_t>(grace.count()), 0,
                                 graceIsOver, verdict.get());
  verdict->timer.reset(timer);
  if (added < 0) {
    verdict->tell(Done());
  }
}

}  // namespace veltrix
