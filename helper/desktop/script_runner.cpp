#include "helper/desktop/script_runner.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <list>
#include <utility>

#include "helper/desktop/script_interpreter.h"
#include "platform/temporary_file.h"
#include "util/file_descriptor.h"
#include "util/phrase.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

Error unwritten(int code) {
  return phrasedError(code, {"cannot write the script's file: %1", {systemReason(code)}});
}

// The text of one script, where its interpreter finds it.
class ScriptFile {
 public:
  ScriptFile() = default;
  ScriptFile(const ScriptFile&) = delete;
  ScriptFile& operator=(const ScriptFile&) = delete;

  // In the user's folder for the session, which lies in memory and is gone with the session. A named file is
  // the first choice, because some interpreters resolve the name that they are given before they open it.
  Status write(const std::string& text) {
    const char* const value = std::getenv("XDG_RUNTIME_DIR");
    const std::string folder = value != nullptr && *value == '/' ? value : "";
    fFolder.reset(folder.empty() ? -1 : open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return fFolder ? writeNamed(folder, text) : writeNameless(text);
  }

  const std::string& path() const { return fPath; }
  int descriptor() const { return fNameless.get(); }  // -1 for a file with a name

 private:
  Status writeNamed(const std::string& folder, const std::string& text) {
    fNamed = std::make_unique<TemporaryFile>(fFolder.get());
    int code = fNamed->create();
    code = code != 0 ? code : fNamed->write(text);
    fPath = folder + "/" + fNamed->name();
    return code != 0 ? Status(unwritten(code)) : Status(Done());
  }

  Status writeNameless(const std::string& text) {
    fNameless.reset(memfd_create("script", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const ssize_t count = fNameless ? ::write(fNameless.get(), text.data(), text.size()) : -1;
    constexpr int kSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
    if (count != static_cast<ssize_t>(text.size()) || fcntl(fNameless.get(), F_ADD_SEALS, kSeals) != 0) {
      return unwritten(errno);
    }
    fPath = "/proc/self/fd/" + std::to_string(kExtraDescriptor);
    return Done();
  }

  FileDescriptor fFolder;  // outlives the file in it
  std::unique_ptr<TemporaryFile> fNamed;
  FileDescriptor fNameless;
  std::string fPath;
};

}  // namespace

struct ScriptRunner::State {
  ProgramStarter& starter;
  Failed failed;
  std::list<ScriptFile> files;  // of the scripts that run
};

ScriptRunner::ScriptRunner(ProgramStarter& starter, Failed failed)
    : fState(std::make_shared<State>(State{starter, std::move(failed), {}})) {}

ScriptRunner::~ScriptRunner() = default;

Status ScriptRunner::run(const std::string& text) {
  if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
    return Error{EINVAL, "the script is empty", {}};
  }
  if (fState->files.size() >= kMostScripts) {
    return phrasedError(EBUSY, {"%1 scripts are running already", {given(std::to_string(kMostScripts))}});
  }
  Result<std::vector<std::string>> interpreter = interpreterOf(text);
  if (!interpreter) {
    return interpreter.error();
  }
  const auto file = fState->files.emplace(fState->files.end());
  Status status = file->write(text);
  if (status) {
    Program program;
    program.arguments = std::move(interpreter.value());
    program.arguments.push_back(file->path());
    program.identifier = kScriptIdentifier;
    program.title = "the script";
    program.extra = file->descriptor();
    const std::weak_ptr<State> kept = fState;
    status = fState->starter.start(program, [kept, file](const Status& outcome) {
      const auto state = kept.lock();
      if (state == nullptr) {
        return;
      }
      state->files.erase(file);
      if (!outcome && state->failed) {
        state->failed(outcome.error());
      }
    });
  }
  if (!status) {
    fState->files.erase(file);
  }
  return status;
}

}  // namespace veltrix
