#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

#include "platform/file_calls.h"

// Conditions under which files cannot be written, for the superuser as well as for everybody else.
namespace veltrix::testing {

// Lets one of the calls fail with an errno value, until the end of the scope.
class ScopedFileCalls {
 public:
  explicit ScopedFileCalls(const FileCalls& calls) { setFileCallsForTesting(calls); }
  ~ScopedFileCalls() { setFileCallsForTesting({}); }
  ScopedFileCalls(const ScopedFileCalls&) = delete;
  ScopedFileCalls& operator=(const ScopedFileCalls&) = delete;
};

// A process that is not allowed what the superuser is, until the end of the scope.
class ScopedOrdinaryUser {
 public:
  ScopedOrdinaryUser() {
    if (fEffective == 0) {
      EXPECT_EQ(seteuid(65534), 0);
    }
  }
  ~ScopedOrdinaryUser() { EXPECT_EQ(seteuid(fEffective), 0); }
  ScopedOrdinaryUser(const ScopedOrdinaryUser&) = delete;
  ScopedOrdinaryUser& operator=(const ScopedOrdinaryUser&) = delete;

 private:
  uid_t fEffective = geteuid();
};

// Lets every file end at `bytes`, until the end of the scope.
class ScopedFileSizeLimit {
 public:
  explicit ScopedFileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &fOld);
    fHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {bytes, fOld.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~ScopedFileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &fOld);
    std::signal(SIGXFSZ, fHandler);
  }
  ScopedFileSizeLimit(const ScopedFileSizeLimit&) = delete;
  ScopedFileSizeLimit& operator=(const ScopedFileSizeLimit&) = delete;

 private:
  rlimit fOld = {};
  void (*fHandler)(int) = SIG_DFL;
};

}  // namespace veltrix::testing
