#include "platform/process_table.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

#include "util/file_descriptor.h"

namespace veltrix {

namespace {

constexpr std::size_t kMaximumNameBytes = 15;
constexpr int kStartTimeField = 19;  // counted from the state, the first field after the name

// What one read of a process's "stat" file tells.
struct ProcessState {
  std::array<char, kMaximumNameBytes> name = {};
  std::size_t nameBytes = 0;
  std::uint32_t startTime = 0;
};

using PidPath = std::array<char, 24>;

PidPath pathOfPid(std::uint32_t pid, std::string_view suffix) {
  PidPath path = {};
  char* end = std::to_chars(path.data(), path.data() + path.size(), pid).ptr;
  std::copy(suffix.begin(), suffix.end(), end);
  return path;
}

// The text is "PID (NAME) STATE NUMBER NUMBER ..."; the name may hold blanks, parentheses and line breaks, so
// that only its last closing parenthesis is its end. None for a process that has ended.
std::optional<ProcessState> parseState(std::string_view text) {
  const std::size_t open = text.find('(');
  const std::size_t close = text.rfind(')');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open ||
      close + 2 >= text.size()) {
    return {};
  }
  std::string_view rest = text.substr(close + 2);
  if (rest.front() == 'Z' || rest.front() == 'X') {
    return {};
  }
  for (int field = 0; field < kStartTimeField; ++field) {
    const std::size_t blank = rest.find(' ');
    if (blank == std::string_view::npos) {
      return {};
    }
    rest.remove_prefix(blank + 1);
  }
  std::uint64_t startTime = 0;
  if (std::from_chars(rest.data(), rest.data() + rest.size(), startTime).ec != std::errc()) {
    return {};
  }
  ProcessState state;
  state.startTime = static_cast<std::uint32_t>(startTime);
  state.nameBytes = text.copy(state.name.data(), std::min(close - open - 1, kMaximumNameBytes), open + 1);
  return state;
}

std::optional<ProcessState> readState(int root, const char* path) {
  const FileDescriptor file(openat(root, path, O_RDONLY | O_CLOEXEC));
  std::array<char, 1024> buffer = {};
  if (!file) {
    return {};
  }
  const ssize_t count = read(file.get(), buffer.data(), buffer.size());
  return count > 0 ? parseState({buffer.data(), static_cast<std::size_t>(count)}) : std::nullopt;
}

// Keeps the folder open and its memory between walks, as the pane walks once a second.
class ProcFileSystem : public ProcessTable {
 public:
  ProcFileSystem(const std::string& root, uid_t user) : fUser(user), fFolder(opendir(root.c_str())) {}

  std::int16_t nextProcess(ProcessSerialNumber* psn) override;
  std::int16_t processName(const ProcessSerialNumber& psn, std::string* name) override;

 private:
  struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
  };

  void look();
  bool belongsToUser(std::uint32_t pid) const;

  uid_t fUser;
  std::unique_ptr<DIR, CloseFolder> fFolder;
  std::vector<std::uint32_t> fPids;  // of all users, rising
  ProcessSerialNumber fLast;         // given by nextProcess
  ProcessState fLastState;
};

void ProcFileSystem::look() {
  fPids.clear();
  if (fFolder == nullptr) {
    return;
  }
  rewinddir(fFolder.get());
  while (const dirent* entry = readdir(fFolder.get())) {
    const char* end = entry->d_name + std::strlen(entry->d_name);
    std::uint32_t pid = 0;
    const std::from_chars_result parsed = std::from_chars(entry->d_name, end, pid);
    if (parsed.ec == std::errc() && parsed.ptr == end && pid != 0) {
      fPids.push_back(pid);
    }
  }
  std::sort(fPids.begin(), fPids.end());
}

bool ProcFileSystem::belongsToUser(std::uint32_t pid) const {
  struct stat attributes = {};
  return fstatat(dirfd(fFolder.get()), pathOfPid(pid, "").data(), &attributes, 0) == 0 &&
         attributes.st_uid == fUser;
}

std::int16_t ProcFileSystem::nextProcess(ProcessSerialNumber* psn) {
  if (*psn == ProcessSerialNumber()) {
    look();
  }
  const auto after = std::upper_bound(fPids.begin(), fPids.end(), psn->pid);
  for (auto pid = after; pid != fPids.end(); ++pid) {
    if (!belongsToUser(*pid)) {
      continue;
    }
    // One that ended since the folder was read is no reason to stop the walk.
    if (const auto state = readState(dirfd(fFolder.get()), pathOfPid(*pid, "/stat").data())) {
      fLastState = *state;
      fLast = {state->startTime, *pid};
      *psn = fLast;
      return 0;
    }
  }
  *psn = {};
  return kProcessNotFound;
}

std::int16_t ProcFileSystem::processName(const ProcessSerialNumber& psn, std::string* name) {
  if (psn == ProcessSerialNumber() || fFolder == nullptr) {
    return kProcessNotFound;
  }
  const auto state = psn == fLast ? std::optional(fLastState)
                                  : readState(dirfd(fFolder.get()), pathOfPid(psn.pid, "/stat").data());
  if (!state || state->startTime != psn.startTime) {
    return kProcessNotFound;
  }
  name->assign(state->name.data(), state->nameBytes);
  return 0;
}

std::optional<ProcessState> readStateInProc(const std::string& process) {
  return readState(AT_FDCWD, ("/proc/" + process + "/stat").c_str());
}

}  // namespace

std::unique_ptr<ProcessTable> makeProcessTable(const std::string& root, uid_t user) {
  return std::make_unique<ProcFileSystem>(root, user);
}

bool processRuns(const ProcessSerialNumber& psn) {
  if (psn == ProcessSerialNumber()) {
    return false;
  }
  const auto state = readStateInProc(std::to_string(psn.pid));
  return state && state->startTime == psn.startTime;
}

ProcessSerialNumber currentProcess() {
  const auto state = readStateInProc("self");
  return {state ? state->startTime : 0, static_cast<std::uint32_t>(getpid())};
}

}  // namespace veltrix
