#include "platform/atomic_file.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "platform/file_calls.h"
#include "util/file_descriptor.h"

namespace veltrix {

namespace {

constexpr int kMaximumLinks = 40;  // as many as the kernel follows
constexpr int kMaximumNameTries = 100;
constexpr int kMaximumRejectedFiles = 100000;
constexpr const char* kRejectedSuffix = ".rejected";
constexpr mode_t kNewFolderMode = 0700;
constexpr mode_t kNewFileMode = 0600;
constexpr mode_t kModeBits = 07777;

FileCalls& fileCalls() {
  static FileCalls calls;
  return calls;
}

Error errorAt(int code, const std::string& what, const std::string& path) {
  std::array<char, 128> reason = {};
  return {code, what + " " + path + ": " + strerror_r(code, reason.data(), reason.size()), {}};
}

// A path as the folder and the name in it.
struct Place {
  std::string folder;
  std::string name;

  std::string path() const { return folder == "/" ? folder + name : folder + "/" + name; }
};

Place placeOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) {
    return {".", path};
  }
  return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

// Follows symbolic links in the last component, also to a file that does not exist.
Result<Place> resolveLinks(const std::string& path) {
  Place place = placeOf(path);
  for (int links = 0; links < kMaximumLinks; ++links) {
    if (place.name.empty()) {
      return errorAt(path.empty() ? ENOENT : EISDIR, "cannot write", path);
    }
    std::array<char, 4097> target = {};
    const ssize_t length = readlink(place.path().c_str(), target.data(), target.size() - 1);
    if (length < 0) {
      return place;  // no link; whatever else is wrong with the path shows when it is used
    }
    const std::string text(target.data(), static_cast<std::size_t>(length));
    place = placeOf(text.front() == '/' ? text : place.folder + "/" + text);
  }
  return errorAt(ELOOP, "cannot write", path);
}

FileDescriptor openFolder(const std::string& path) {
  return FileDescriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

int syncFolder(int folder) {
  int outcome = 0;
  do {
    outcome = fileCalls().syncFolder(folder);
  } while (outcome != 0 && errno == EINTR);
  return outcome;
}

// Opens a folder, after creating it and its parents where they are missing.
Result<FileDescriptor> makeFolder(const std::string& path) {
  if (FileDescriptor folder = openFolder(path)) {
    return folder;
  }
  const Place place = placeOf(path);
  if (errno != ENOENT || place.name.empty() || place.folder == path) {
    return errorAt(errno, "cannot open the folder", path);
  }
  Result<FileDescriptor> parent = makeFolder(place.folder);
  if (!parent) {
    return parent;
  }
  if (mkdirat(parent.value().get(), place.name.c_str(), kNewFolderMode) == 0) {
    syncFolder(parent.value().get());
  } else if (errno != EEXIST) {
    return errorAt(errno, "cannot create the folder", path);
  }
  FileDescriptor folder = openFolder(path);
  if (!folder) {
    return errorAt(errno, "cannot open the folder", path);
  }
  return folder;
}

// A new file that disappears again unless it has been renamed.
class TemporaryFile {
 public:
  explicit TemporaryFile(int folder) : fFolder(folder) {}
  ~TemporaryFile() {
    if (fFile) {
      unlinkat(fFolder, fName.data(), 0);
    }
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // Each of these returns 0, or an errno value.
  int create();
  int write(std::string_view bytes) const;
  int takeAttributesOf(const struct stat& old) const;
  int sync() const;
  int renameTo(const std::string& name);

 private:
  int fFolder;
  FileDescriptor fFile;
  std::array<char, 64> fName = {};
};

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

// 0, or an errno value. The rename is the moment of change; nothing after it may turn success into failure,
// because the file is the new one from there on. A folder that could not be synced means at worst that a
// crash brings back the old file, whole.
int replaceFile(int folder, const std::string& name, std::string_view bytes) {
  struct stat old = {};
  const bool replaces = fstatat(folder, name.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0;
  if (replaces && !S_ISREG(old.st_mode)) {
    return S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
  }
  TemporaryFile file(folder);
  int code = file.create();
  if (code == 0) {
    code = file.write(bytes);
  }
  if (code == 0 && replaces) {
    code = file.takeAttributesOf(old);
  }
  if (code == 0) {
    code = file.sync();
  }
  if (code == 0) {
    code = file.renameTo(name);
  }
  if (code == 0) {
    syncFolder(folder);
  }
  return code;
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

int renameUnlessTaken(int folder, const char* from, const char* to) {
  if (fileCalls().renameUnlessTaken(folder, from, folder, to) == 0) {
    return 0;
  }
  return errno == EINVAL || errno == ENOSYS ? renameOverPlaceholder(folder, from, to) : errno;
}

}  // namespace

void setFileCallsForTesting(const FileCalls& calls) {
  fileCalls() = calls;
}

Status writeFileAtomically(const std::string& path, std::string_view bytes) {
  const Result<Place> place = resolveLinks(path);
  if (!place) {
    return place.error();
  }
  const Result<FileDescriptor> folder = makeFolder(place.value().folder);
  if (!folder) {
    return folder.error();
  }
  if (const int code = replaceFile(folder.value().get(), place.value().name, bytes); code != 0) {
    return errorAt(code, "cannot write", path);
  }
  return Done();
}

Result<std::string> keepRejectedFile(const std::string& path) {
  const Result<Place> resolved = resolveLinks(path);
  Place place = resolved ? resolved.value() : placeOf(path);
  const FileDescriptor folder = openFolder(place.folder);
  if (!folder) {
    return errorAt(errno, "cannot keep", path);
  }
  const std::string first = place.name + kRejectedSuffix;
  for (int number = 1; number <= kMaximumRejectedFiles; ++number) {
    const std::string name = number == 1 ? first : first + "." + std::to_string(number);
    const int code = renameUnlessTaken(folder.get(), place.name.c_str(), name.c_str());
    if (code == 0) {
      return Place{place.folder, name}.path();
    }
    if (code != EEXIST) {
      return errorAt(code, "cannot keep", path);
    }
  }
  return errorAt(EEXIST, "cannot keep", path);
}

Status putRejectedFileBack(const std::string& kept) {
  const Place place = placeOf(kept);
  const std::size_t suffix = place.name.rfind(kRejectedSuffix);
  const FileDescriptor folder = openFolder(place.folder);
  if (suffix == std::string::npos || !folder) {
    return errorAt(folder ? EINVAL : errno, "cannot put back", kept);
  }
  const std::string name = place.name.substr(0, suffix);
  if (const int code = renameUnlessTaken(folder.get(), place.name.c_str(), name.c_str()); code != 0) {
    return errorAt(code, "cannot put back", kept);
  }
  return Done();
}

}  // namespace veltrix
