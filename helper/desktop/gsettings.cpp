#include "helper/desktop/gsettings.h"

#include <sys/mman.h>

#include <cerrno>
#include <memory>
#include <utility>

#include "helper/desktop/program_output.h"
#include "util/file_descriptor.h"
#include "util/system_error.h"

namespace veltrix {
namespace {

constexpr std::size_t kLongestOutput = 65536;

}  // namespace

// What one prints after its grace goes nowhere, as each has a file of its own.
void runGsettings(ProgramStarter& starter, std::vector<std::string> words, std::chrono::microseconds grace,
                  std::function<void(const Result<std::string>&)> read) {
  const auto printed = std::make_shared<FileDescriptor>(memfd_create("setting", MFD_CLOEXEC));
  if (!*printed) {
    read(systemError(errno, "cannot run", "gsettings"));
    return;
  }
  Program program;
  program.arguments = std::move(words);
  program.arguments.insert(program.arguments.begin(), "gsettings");
  program.output = printed->get();
  starter.startAndWatch(program, grace, [printed, read = std::move(read)](const Status& ended) {
    read(ended ? Result<std::string>(textFromStart(printed->get(), kLongestOutput)) : ended.error());
  });
}

}  // namespace veltrix
