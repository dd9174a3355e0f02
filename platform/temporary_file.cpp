#include "platform/temporary_file.h"

#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>

namespace veltrix {

namespace {

constexpr int kMaximumNameTries = 100;
constexpr mode_t kNewFileMode = 0600;
constexpr mode_t kModeBits = 07777;

FileCalls& calls() {
  static FileCalls inForce;
  return inForce;
}

// Some file systems cannot rename without replacing. There an empty file of our own takes the name first, and
// is the only one that can be replaced.
int renameOverPlaceholder(int folder, const char* from, const char* to) {
  const FileDescriptor placeholder(
      openat(folder, to, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, kNewFileMode));
  if (!placeholder) {
    return errno;
  }
  if (renameat(folder, from, folder, to) == 0) {
    return 0;
  }
  const int code = errno;
  unlinkat(folder, to, 0);
  return code;
}

}  // namespace

const FileCalls& fileCalls() {
  return calls();
}

void setFileCallsForTesting(const FileCalls& newCalls) {
  calls() = newCalls;
}

int renameUnlessTaken(int folder, const char* from, const char* to) {
  if (fileCalls().renameUnlessTaken(folder, from, folder, to) == 0) {
    return 0;
  }
  return errno == EINVAL || errno == ENOSYS ? renameOverPlaceholder(folder, from, to) : errno;
}

TemporaryFile::~TemporaryFile() {
  if (fFile) {
    unlinkat(fFolder, fName.data(), 0);
  }
}

int TemporaryFile::create() {
  for (int tries = 0; tries < kMaximumNameTries; ++tries) {
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, GRND_NONBLOCK) != static_cast<ssize_t>(sizeof number)) {
      number = static_cast<std::uint64_t>(getpid()) * kMaximumNameTries + static_cast<std::uint64_t>(tries);
    }
    std::snprintf(fName.data(), fName.size(), ".veltrix-%016llx.tmp",
                  static_cast<unsigned long long>(number));
    fFile.reset(fileCalls().create(fFolder, fName.data(),
                                   O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, kNewFileMode));
    if (fFile) {
      return 0;
    }
    if (errno != EEXIST && errno != EINTR) {
      return errno;
    }
  }
  return EEXIST;
}

int TemporaryFile::write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t count = fileCalls().write(fFile.get(), bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) {
      return errno;
    }
    if (count == 0) {
      return EIO;
    }
    bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
  }
  return 0;
}

int TemporaryFile::takeAttributesOf(const struct stat& old) const {
  struct stat own = {};
  if (fstat(fFile.get(), &own) != 0) {
    return errno;
  }
  if (own.st_uid != old.st_uid || own.st_gid != old.st_gid) {
    // Only the superuser may give files away. For everybody else a file that is theirs is as good.
    if (fchown(fFile.get(), old.st_uid, old.st_gid) != 0) {
      [[maybe_unused]] const int kept = fchown(fFile.get(), static_cast<uid_t>(-1), old.st_gid);
    }
  }
  return fchmod(fFile.get(), old.st_mode & kModeBits) == 0 ? 0 : errno;
}

int TemporaryFile::sync() const {
  while (fileCalls().syncData(fFile.get()) != 0) {
    if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

int TemporaryFile::renameTo(const std::string& name) {
  if (fileCalls().rename(fFolder, fName.data(), fFolder, name.c_str()) != 0) {
    return errno;
  }
  fFile.reset();
  return 0;
}

int TemporaryFile::renameToNew(const std::string& name) {
  const int code = renameUnlessTaken(fFolder, fName.data(), name.c_str());
  if (code == 0) {
    fFile.reset();
  }
  return code;
}

}  // namespace veltrix
