#pragma once

#include <sys/stat.h>

#include <array>
#include <string>
#include <string_view>

#include "platform/file_calls.h"
#include "util/file_descriptor.h"

namespace veltrix {

// A new file in an open folder that disappears again unless it gets a name. Each operation returns 0, or an
// errno value.
class TemporaryFile {
 public:
  explicit TemporaryFile(int folder) : fFolder(folder) {}
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // With mode 0600, under a name that nobody can foresee.
  int create();

  // In its folder, once it has been made and as long as it has no other.
  const char* name() const { return fName.data(); }

  int write(std::string_view bytes) const;

  // Owner and group as far as this process may set them, and the mode.
  int takeAttributesOf(const struct stat& old) const;

  // Returns when the bytes are on the disk.
  int sync() const;

  // Replaces what has that name.
  int renameTo(const std::string& name);

  // EEXIST when something has that name.
  int renameToNew(const std::string& name);

 private:
  int fFolder;
  FileDescriptor fFile;
  std::array<char, 64> fName = {};
};

// Renames inside of an open folder; EEXIST when something has the name `to`. 0, or an errno value.
int renameUnlessTaken(int folder, const char* from, const char* to);

// The calls in force.
const FileCalls& fileCalls();

}  // namespace veltrix
