#include "tests/support/program_run.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace veltrix::testing {
namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
// A file without a name, so that nothing is left and no pipe fills up.
using AnonymousFile = std::unique_ptr<std::FILE, FileCloser>;

std::string contentsOf(std::FILE* file) {
  std::string text;
  std::rewind(file);
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
    text += static_cast<char>(c);
  }
  return text;
}

[[noreturn]] void execute(const std::vector<std::string>& arguments, const EnvironmentChanges& environment,
                          int output, int errors) {
  dup2(open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  for (const auto& [name, value] : environment) {
    value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
  }
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (const auto& argument : arguments) {
    pointers.push_back(const_cast<char*>(argument.c_str()));
  }
  pointers.push_back(nullptr);
  execvp(pointers.front(), pointers.data());
  _exit(127);
}

}  // namespace

ProgramRun runProgram(const std::vector<std::string>& arguments, const EnvironmentChanges& environment) {
  const AnonymousFile output(std::tmpfile());
  const AnonymousFile errors(std::tmpfile());
  if (!output || !errors) {
    ADD_FAILURE() << "no temporary files";
    return {};
  }
  const pid_t child = fork();
  if (child == 0) {
    execute(arguments, environment, fileno(output.get()), fileno(errors.get()));
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child) {
    ADD_FAILURE() << "cannot run " << arguments.front();
    return {};
  }
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), contentsOf(output.get()),
          contentsOf(errors.get())};
}

}  // namespace veltrix::testing
