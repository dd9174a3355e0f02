#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "util/file_descriptor.h"
#include "util/result.h"

namespace veltrix {

// A second process that sleeps until the helper is gone and, when it was killed or crashed, becomes the next
// helper: without one every button of a trackball would be an ordinary one until the next login. It has a
// name of its own, as the helper is found by its name. The helper may end it, or be without it, at any time.
class Keeper {
 public:
  // Forks, so it is to be called before there are threads, connections or much memory. `arguments` are those
  // of the successor, without the program. What a predecessor left in the environment for this call is taken
  // out of it.
  static Result<Keeper> start(const std::vector<std::string>& arguments);

  Keeper(Keeper&&) noexcept = default;
  Keeper& operator=(Keeper&&) = delete;
  // The end that follows is meant: there is no successor.
  ~Keeper();

  // From now on an end without the destructor brings a successor.
  void keep() const;

  // How long the successor waits after `deaths` of the helpers before it, each soon after its start.
  static std::chrono::milliseconds delayAfter(unsigned deaths);

 private:
  explicit Keeper(FileDescriptor line) : fLine(std::move(line)) {}
  FileDescriptor fLine;  // the keeper reads the other end
};

}  // namespace veltrix
