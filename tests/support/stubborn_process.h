#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <string>

#include "tests/support/child_process.h"
#include "tests/support/wait_until.h"

namespace veltrix::testing {

// Puts a program in the place of `program` that ignores SIGTERM, and starts it. `folder` takes what it needs.
inline std::unique_ptr<ChildProcess> startStubbornProcess(const std::string& program,
                                                          const std::string& folder) {
  std::filesystem::remove(program);
  std::filesystem::copy_file("/bin/sh", program);
  const std::string ready = folder + "/ready";
  const std::string never = folder + "/never";
  EXPECT_EQ(mkfifo(never.c_str(), 0600), 0);
  // Waits in the shell itself, so that there is one process only.
  auto process = std::make_unique<ChildProcess>(std::vector<std::string>{
      program, "-c", "trap '' TERM; : > '" + ready + "'; read -r line < '" + never + "'"});
  EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(ready); }));
  return process;
}

}  // namespace veltrix::testing
