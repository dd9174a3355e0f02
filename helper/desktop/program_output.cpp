#include "helper/desktop/program_output.h"

#include <fcntl.h>
#include <syslog.h>
#include <systemd/sd-journal.h>
#include <unistd.h>

namespace veltrix {

FileDescriptor journalOutput(const std::string& identifier) {
  // Lines that begin with a priority in angle brackets are no concern of ours.
  FileDescriptor output(sd_journal_stream_fd(identifier.c_str(), LOG_INFO, 0));
  if (!output) {
    output.reset(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  }
  if (!output) {
    output.reset(open("/dev/null", O_WRONLY | O_CLOEXEC));
  }
  return output;
}

std::string textFromStart(int file, std::size_t most) {
  std::string text(most, '\0');
  const ssize_t count = pread(file, text.data(), text.size(), 0);
  text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return text;
}

}  // namespace veltrix
