#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <string>

#include "tests/support/temporary_folder.h"
#include "util/file_descriptor.h"

namespace veltrix::testing {

// A pipe through which programs that nobody waits for tell a test what became of them.
class ProgramAnswer {
 public:
  explicit ProgramAnswer(std::string path) : fPath(std::move(path)) {
    EXPECT_EQ(mkfifo(fPath.c_str(), 0600), 0);
    fPipe.reset(open(fPath.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
  }

  // Makes `program` a shell script that can write to "$answer".
  void writeProgram(const std::string& program, const std::string& script) const {
    writeFile(program, "#!/bin/sh\nanswer='" + fPath + "'\n" + script);
    chmod(program.c_str(), 0700);
  }

  // What the programs have written up to the line "end".
  std::string text() const {
    constexpr int kPatienceMilliseconds = 20000;
    std::string text;
    pollfd waiting = {fPipe.get(), POLLIN, 0};
    while (text.find("end\n") == std::string::npos && poll(&waiting, 1, kPatienceMilliseconds) > 0) {
      std::array<char, 4096> buffer = {};
      const ssize_t count = read(fPipe.get(), buffer.data(), buffer.size());
      text.append(buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return text;
  }

 private:
  std::string fPath;
  FileDescriptor fPipe;
};

}  // namespace veltrix::testing
