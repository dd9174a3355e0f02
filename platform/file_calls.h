#pragma once

#include <fcntl.h>
#include <stdio.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstddef>

namespace veltrix {

// The system calls of writing a file that can fail late, so that a test can let them fail: a full disk or a
// failing one cannot be had otherwise without privileges.
struct FileCalls {
  int (*create)(int folder, const char* name, int flags, mode_t mode) = [](int folder, const char* name,
                                                                           int flags, mode_t mode) {
    return ::openat(folder, name, flags, mode);
  };
  ssize_t (*write)(int file, const void* bytes, std::size_t count) = ::write;
  int (*syncData)(int file) = ::fdatasync;
  int (*rename)(int fromFolder, const char* from, int toFolder, const char* to) = ::renameat;
  int (*renameUnlessTaken)(int fromFolder, const char* from, int toFolder, const char* to) =
      [](int fromFolder, const char* from, int toFolder, const char* to) {
        return ::renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE);
      };
  int (*syncFolder)(int folder) = ::fsync;
};

// Replaces the calls for the whole process. Not thread-safe; tests only.
void setFileCallsForTesting(const FileCalls& calls);

}  // namespace veltrix
