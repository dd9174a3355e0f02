#pragma once

#include <unistd.h>

#include <utility>

namespace veltrix {

// Owns a descriptor and closes it; -1 is none.
class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor = -1) : fDescriptor(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : fDescriptor(std::exchange(other.fDescriptor, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
      reset(std::exchange(other.fDescriptor, -1));
    }
    return *this;
  }
  ~FileDescriptor() { reset(); }

  int get() const { return fDescriptor; }
  explicit operator bool() const { return fDescriptor >= 0; }

  // Gives the descriptor away.
  int release() { return std::exchange(fDescriptor, -1); }

  void reset(int descriptor = -1) {
    if (fDescriptor >= 0) {
      ::close(fDescriptor);
    }
    fDescriptor = descriptor;
  }

 private:
  int fDescriptor;
};

}  // namespace veltrix
