#include "tests/support/child_process.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace veltrix::testing {

namespace {

std::vector<std::string> changedEnvironment(const EnvironmentChanges& changes) {
  std::vector<std::string> result;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text(*entry);
    if (changes.count(text.substr(0, text.find('='))) == 0)
      result.push_back(text);
  }
  for (const auto& [name, value] : changes) {
    if (value)
      result.push_back(name + "=" + *value);
  }
  return result;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (std::string& text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

[[noreturn]] void becomeChild(pid_t parent, int output, char** arguments, char** environment) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent)
    _exit(126);
  dup2(output, STDOUT_FILENO);
  dup2(output, STDERR_FILENO);
  execvpe(arguments[0], arguments, environment);
  _exit(127);
}

}  // namespace

ChildProcess::ChildProcess(std::vector<std::string> arguments, const EnvironmentChanges& environment)
    : fOutput(memfd_create("child-output", MFD_CLOEXEC)) {
  // Everything that needs memory is made before the fork: the child of a program with threads may not ask.
  std::vector<std::string> texts = changedEnvironment(environment);
  const std::vector<char*> argumentPointers = pointersTo(arguments);
  const std::vector<char*> environmentPointers = pointersTo(texts);
  const pid_t parent = getpid();
  fPid = fork();
  if (fPid == 0)
    becomeChild(parent, fOutput, const_cast<char**>(argumentPointers.data()),
                const_cast<char**>(environmentPointers.data()));
  if (fPid < 0)
    ADD_FAILURE() << "cannot start " << arguments[0];
}

ChildProcess::~ChildProcess() {
  kill();
  close(fOutput);
}

void ChildProcess::send(int signal) const {
  if (fPid > 0 && !fExit)
    ::kill(fPid, signal);
}

std::optional<int> ChildProcess::waitForExit(std::chrono::milliseconds timeout) {
  if (fExit || fPid < 0)
    return fExit;
  // Called directly: the C library's header has no C++ linkage in all versions.
  const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, fPid, 0));
  pollfd poller{descriptor, POLLIN, 0};
  const int ready = poll(&poller, 1, static_cast<int>(timeout.count()));
  close(descriptor);
  if (ready <= 0)
    return std::nullopt;
  int status = 0;
  if (waitpid(fPid, &status, 0) != fPid)
    return std::nullopt;
  fExit = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return fExit;
}

void ChildProcess::kill() {
  if (fPid < 0 || fExit)
    return;
  send(SIGKILL);
  waitForExit(std::chrono::seconds(10));
}

std::string ChildProcess::output() const {
  struct stat status {};
  if (fstat(fOutput, &status) != 0)
    return {};
  std::string text(static_cast<std::size_t>(status.st_size), '\0');
  const ssize_t size = pread(fOutput, text.data(), text.size(), 0);
  text.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  return text;
}

}  // namespace veltrix::testing
