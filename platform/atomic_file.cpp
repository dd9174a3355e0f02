#include "platform/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/file_calls.h"
#include "platform/temporary_file.h"
#include "util/file_descriptor.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

constexpr int kMaximumLinks = 40;  // as many as the kernel follows
constexpr int kMaximumRejectedFiles = 100000;
constexpr const char* kRejectedSuffix = ".rejected";
constexpr mode_t kNewFolderMode = 0700;

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
      return systemError(path.empty() ? ENOENT : EISDIR, "cannot write", path);
    }
    std::array<char, 4097> target = {};
    const ssize_t length = readlink(place.path().c_str(), target.data(), target.size() - 1);
    if (length < 0) {
      return place;  // no link; whatever else is wrong with the path shows when it is used
    }
    const std::string text(target.data(), static_cast<std::size_t>(length));
    place = placeOf(text.front() == '/' ? text : place.folder + "/" + text);
  }
  return systemError(ELOOP, "cannot write", path);
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
    return systemError(errno, "cannot open the folder", path);
  }
  Result<FileDescriptor> parent = makeFolder(place.folder);
  if (!parent) {
    return parent;
  }
  if (mkdirat(parent.value().get(), place.name.c_str(), kNewFolderMode) == 0) {
    syncFolder(parent.value().get());
  } else if (errno != EEXIST) {
    return systemError(errno, "cannot create the folder", path);
  }
  FileDescriptor folder = openFolder(path);
  if (!folder) {
    return systemError(errno, "cannot open the folder", path);
  }
  return folder;
}

// 0, or an errno value. The rename is the moment of change; nothing after it may turn success into failure,
// because the file is the new one from there on. A folder that could not be synced means at worst that a
// crash brings back the old file, whole.
int placeFile(int folder, const std::string& name, std::string_view bytes, bool mustBeNew) {
  struct stat old = {};
  const bool replaces = fstatat(folder, name.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0;
  if (replaces && mustBeNew) {
    return EEXIST;
  }
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
    code = mustBeNew ? file.renameToNew(name) : file.renameTo(name);
  }
  if (code == 0) {
    syncFolder(folder);
  }
  return code;
}

Status writeAt(const Place& place, std::string_view bytes, bool mustBeNew) {
  const Result<FileDescriptor> folder = makeFolder(place.folder);
  if (!folder) {
    return folder.error();
  }
  if (const int code = placeFile(folder.value().get(), place.name, bytes, mustBeNew); code != 0) {
    return systemError(code, "cannot write", place.path());
  }
  return Done();
}

}  // namespace

Status writeFileAtomically(const std::string& path, std::string_view bytes) {
  const Result<Place> place = resolveLinks(path);
  return place ? writeAt(place.value(), bytes, false) : place.error();
}

Status writeNewFileAtomically(const std::string& path, std::string_view bytes) {
  const Place place = placeOf(path);
  return place.name.empty() ? systemError(path.empty() ? ENOENT : EISDIR, "cannot write", path)
                            : writeAt(place, bytes, true);
}

Result<std::string> keepRejectedFile(const std::string& path) {
  const Result<Place> resolved = resolveLinks(path);
  Place place = resolved ? resolved.value() : placeOf(path);
  const FileDescriptor folder = openFolder(place.folder);
  if (!folder) {
    return systemError(errno, "cannot keep", path);
  }
  const std::string first = place.name + kRejectedSuffix;
  for (int number = 1; number <= kMaximumRejectedFiles; ++number) {
    const std::string name = number == 1 ? first : first + "." + std::to_string(number);
    const int code = renameUnlessTaken(folder.get(), place.name.c_str(), name.c_str());
    if (code == 0) {
      return Place{place.folder, name}.path();
    }
    if (code != EEXIST) {
      return systemError(code, "cannot keep", path);
    }
  }
  return systemError(EEXIST, "cannot keep", path);
}

Status putRejectedFileBack(const std::string& kept) {
  const Place place = placeOf(kept);
  const std::size_t suffix = place.name.rfind(kRejectedSuffix);
  const FileDescriptor folder = openFolder(place.folder);
  if (suffix == std::string::npos || !folder) {
    return systemError(folder ? EINVAL : errno, "cannot put back", kept);
  }
  const std::string name = place.name.substr(0, suffix);
  if (const int code = renameUnlessTaken(folder.get(), place.name.c_str(), name.c_str()); code != 0) {
    return systemError(code, "cannot put back", kept);
  }
  return Done();
}

}  // namespace veltrix
