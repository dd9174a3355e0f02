#include "tests/support/x_server.h"

#include <gtest/gtest.h>

#include "tests/support/program_run.h"
#include "tests/support/wait_until.h"

namespace veltrix::testing {

XServer::XServer()
    : fProcess({"Xvfb", "-displayfd", "1", "-screen", "0", "640x480x24", "-noreset", "-nolisten", "tcp"}) {
  // It says the number of its display as the first line when it is ready; warnings may stand around it.
  const auto lineOfNumber = [this]() -> std::string {
    const std::string output = fProcess.output();
    for (std::size_t start = 0; start < output.size();) {
      const auto end = output.find('\n', start);
      if (end == std::string::npos) {
        break;
      }
      auto line = output.substr(start, end - start);
      if (!line.empty() && line.find_first_not_of("0123456789") == std::string::npos) {
        return line;
      }
      start = end + 1;
    }
    return {};
  };
  if (waitUntil([&] { return !lineOfNumber().empty(); })) {
    fDisplay = ":" + lineOfNumber();
  } else {
    ADD_FAILURE() << "Xvfb does not start: " << fProcess.output();
  }
}

void XServer::setLayout(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), {"setxkbmap", "-display", fDisplay});
  const auto run = runProgram(arguments, {});
  EXPECT_EQ(run.exitCode, 0) << run.errors;
}

}  // namespace veltrix::testing
