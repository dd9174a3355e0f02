#include "helper/keeper.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <thread>

#include "util/system_error.h"

namespace veltrix {

namespace {

constexpr const char* kProcessName = "veltrix-keeper";  // at most 15 characters
constexpr const char* kDeathsVariable = "VELTRIX_HELPER_DEATHS";
constexpr char kKeep = 'k';
constexpr char kDismiss = 'd';

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kFirstDelay{100};
constexpr std::chrono::milliseconds kLongestDelay{60'000};
constexpr std::chrono::seconds kLongLife{60};  // who lives longer has not died of its start

unsigned takeDeaths() {
  const char* text = std::getenv(kDeathsVariable);
  if (text == nullptr)
    return 0;
  unsigned deaths = 0;
  std::from_chars(text, text + std::strlen(text), deaths);
  unsetenv(kDeathsVariable);
  return deaths;
}

std::string ownProgram() {
  std::string path(4096, '\0');
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
  path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  // An update replaces the file; the successor is the new one.
  constexpr std::string_view kReplaced = " (deleted)";
  if (path.ends_with(kReplaced))
    path.resize(path.size() - kReplaced.size());
  return path;
}

// The last word of the helper, 0 when it has never said one.
char lastWord(int line) {
  char last = 0;
  for (;;) {
    char word = 0;
    const ssize_t count = read(line, &word, 1);
    if (count == 1)
      last = word;
    else if (count == 0 || errno != EINTR)
      return last;
  }
}

void becomeHelper(const std::vector<std::string>& arguments, unsigned deaths) {
  setenv(kDeathsVariable, std::to_string(deaths).c_str(), 1);
  std::string program = ownProgram();
  std::vector<char*> pointers{program.data()};
  for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
  pointers.push_back(nullptr);
  execv(program.c_str(), pointers.data());
}

[[noreturn]] void watch(const FileDescriptor& line, const std::vector<std::string>& arguments,
                        unsigned deaths) {
  prctl(PR_SET_NAME, kProcessName);
  const Clock::time_point start = Clock::now();
  if (lastWord(line.get()) != kKeep)
    _exit(0);
  if (Clock::now() - start >= kLongLife)
    deaths = 0;
  std::this_thread::sleep_for(Keeper::delayAfter(deaths));
  becomeHelper(arguments, deaths + 1);
  _exit(1);
}

void say(const FileDescriptor& line, char word) {
  if (line) [[maybe_unused]]
    const ssize_t count = write(line.get(), &word, 1);
}

}  // namespace

std::chrono::milliseconds Keeper::delayAfter(unsigned deaths) {
  return std::min(kLongestDelay, kFirstDelay * (1 + static_cast<std::int64_t>(deaths)));
}

Result<Keeper> Keeper::start(const std::vector<std::string>& arguments) {
  const unsigned deaths = takeDeaths();
  int ends[2] = {-1, -1};
  if (pipe2(ends, O_CLOEXEC) != 0)
    return systemError(errno, "cannot make", "a pipe");
  FileDescriptor reading(ends[0]);
  FileDescriptor writing(ends[1]);
  // The process in between ends at once, so that the keeper is nobody's child that would have to be
  // collected.
  const pid_t pid = fork();
  if (pid < 0)
    return systemError(errno, "cannot start", "the keeper");
  if (pid == 0) {
    writing.reset();
    if (fork() == 0)
      watch(reading, arguments, deaths);
    _exit(0);
  }
  while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
  }
  return Keeper(std::move(writing));
}

Keeper::~Keeper() {
  say(fLine, kDismiss);
}

void Keeper::keep() const {
  say(fLine, kKeep);
}

}  // namespace veltrix
