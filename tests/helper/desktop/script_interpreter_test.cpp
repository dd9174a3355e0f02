#include "helper/desktop/script_interpreter.h"

#include <gmock/gmock.h>

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using namespace std::string_literals;

std::vector<std::string> interpreter(std::string_view script) {
  const auto found = interpreterOf(script);
  return found ? found.value() : std::vector<std::string>{"(none)"};
}

TEST(ScriptInterpreter, TextWithoutALineForOneIsForTheShell) {
  for (const char* script : {"echo hello", "", " #!/bin/cat", "# !/bin/cat", "\n#!/bin/cat"}) {
    EXPECT_THAT(interpreter(script), ElementsAre("/bin/sh"));
  }
}

TEST(ScriptInterpreter, LineNamesAProgram) {
  EXPECT_THAT(interpreter("#!/usr/bin/python3\nprint()\n"), ElementsAre("/usr/bin/python3"));
  EXPECT_THAT(interpreter("#! \t/usr/bin/python3 \r\nprint()\n"), ElementsAre("/usr/bin/python3"));
  EXPECT_THAT(interpreter("#!/bin/cat"), ElementsAre("/bin/cat"));
}

TEST(ScriptInterpreter, RestOfTheLineIsOneArgument) {
  EXPECT_THAT(interpreter("#!/bin/sh -e\n"), ElementsAre("/bin/sh", "-e"));
  EXPECT_THAT(interpreter("#!/usr/bin/env python3\n"), ElementsAre("/usr/bin/env", "python3"));
  EXPECT_THAT(interpreter("#!/usr/bin/env -S awk  -f \n"), ElementsAre("/usr/bin/env", "-S awk  -f"));
  EXPECT_THAT(interpreter("#!/bin/sh $(reboot) 'a b'\n"), ElementsAre("/bin/sh", "$(reboot) 'a b'"));
}

TEST(ScriptInterpreter, LineWithoutAProgramIsForTheShell) {
  EXPECT_THAT(interpreter("#!\necho"), ElementsAre("/bin/sh"));
  EXPECT_THAT(interpreter("#! \r\necho"), ElementsAre("/bin/sh"));
}

TEST(ScriptInterpreter, ProgramWithoutAnAbsolutePathIsRefused) {
  for (const std::string& script : {"#!python3\n"s, "#!./python3\n"s, "#!~/python3\n"s, "#!/bin/s\0h\n"s}) {
    const auto found = interpreterOf(script);
    ASSERT_FALSE(found.ok());
    EXPECT_THAT(found.error().message, HasSubstr("no absolute path"));
  }
}

}  // namespace
}  // namespace veltrix
