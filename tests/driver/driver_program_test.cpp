#include "driver/driver_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/version.h"
#include "tests/support/program_run.h"

namespace veltrix {
namespace {

using ::testing::HasSubstr;
using testing::ProgramRun;
using testing::runProgram;

TEST(DriverProgram, ShowsItsHelp) {
  const ProgramRun run = runProgram({VELTRIX_DRIVER, "--help"}, {});
  EXPECT_EQ(run.exitCode, kExitDone);
  EXPECT_EQ(run.output, kDriverUsage);
  EXPECT_EQ(run.errors, "");
}

TEST(DriverProgram, ShowsItsVersion) {
  const ProgramRun run = runProgram({VELTRIX_DRIVER, "--version"}, {});
  EXPECT_EQ(run.exitCode, kExitDone);
  EXPECT_EQ(run.output, std::string("veltrix-driver ") + kDriverVersion + "\n");
}

TEST(DriverProgram, SaysWhatItDoesNotUnderstand) {
  const ProgramRun run = runProgram({VELTRIX_DRIVER, "--loud"}, {});
  EXPECT_EQ(run.exitCode, kExitUsage);
  EXPECT_EQ(run.output, "");
  EXPECT_THAT(run.errors, HasSubstr("\"--loud\""));
}

}  // namespace
}  // namespace veltrix
