#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace veltrix::testing {

// Sets an environment variable, or removes it, until the end of the scope.
class ScopedEnvironment {
 public:
  ScopedEnvironment(std::string name, const std::optional<std::string>& value) : fName(std::move(name)) {
    if (const char* old = std::getenv(fName.c_str())) {
      fOld = old;
    }
    apply(value);
  }
  ~ScopedEnvironment() { apply(fOld); }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  void apply(const std::optional<std::string>& value) const {
    if (value) {
      setenv(fName.c_str(), value->c_str(), 1);
    } else {
      unsetenv(fName.c_str());
    }
  }

  std::string fName;
  std::optional<std::string> fOld;
};

}  // namespace veltrix::testing
