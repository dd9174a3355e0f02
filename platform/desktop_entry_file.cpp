#include "platform/desktop_entry_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "util/file_descriptor.h"

namespace veltrix {

namespace {

constexpr std::size_t kMaximumEntryBytes = 1024UL * 1024UL;

}  // namespace

std::string readEntryFile(const std::string& path) {
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat attributes = {};
  if (!file || fstat(file.get(), &attributes) != 0 || !S_ISREG(attributes.st_mode)) {
    return "";
  }
  std::string bytes(std::min(static_cast<std::size_t>(attributes.st_size), kMaximumEntryBytes), '\0');
  std::size_t used = 0;
  while (used < bytes.size()) {
    const ssize_t count = read(file.get(), bytes.data() + used, bytes.size() - used);
    if (count == 0 || (count < 0 && errno != EINTR)) {
      break;
    }
    used += count > 0 ? static_cast<std::size_t>(count) : 0;
  }
  bytes.resize(used);
  return bytes;
}

}  // namespace veltrix
