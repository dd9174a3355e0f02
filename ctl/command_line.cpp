#include "ctl/command_line.h"

#include <CLI/CLI.hpp>
#include <utility>

namespace veltrix::ctl {

CommandOption& CommandOption::required() {
  fOption->required();
  return *this;
}

CommandOption& CommandOption::takes(int fewest, int most) {
  fOption->expected(fewest, most);
  return *this;
}

CommandOption& CommandOption::repeats() {
  fOption->take_all()->expected(1)->allow_extra_args(false);
  return *this;
}

CommandOption& CommandOption::oneOf(std::initializer_list<const char*> words) {
  fOption->check(CLI::IsMember(std::vector<std::string>(words.begin(), words.end())));
  return *this;
}

CommandOption& CommandOption::inRange(std::int32_t first, std::int32_t last) {
  fOption->check(CLI::Range(first, last));
  return *this;
}

CommandOption& CommandOption::needs(CommandOption other) {
  fOption->needs(other.fOption);
  return *this;
}

CommandOption& CommandOption::excludes(CommandOption other) {
  fOption->excludes(other.fOption);
  return *this;
}

CommandLine CommandLine::addCommand(const char* name, const char* description) {
  return CommandLine(*fApp->add_subcommand(name, description));
}

CommandOption CommandLine::addOption(const char* names, std::string& value, const char* description) {
  return CommandOption(*fApp->add_option(names, value, description));
}

CommandOption CommandLine::addOption(const char* names, std::int32_t& value, const char* description) {
  return CommandOption(*fApp->add_option(names, value, description));
}

CommandOption CommandLine::addOption(const char* names, std::vector<std::string>& value,
                                     const char* description) {
  return CommandOption(*fApp->add_option(names, value, description));
}

CommandOption CommandLine::addFlag(const char* names, bool& value, const char* description) {
  return CommandOption(*fApp->add_flag(names, value, description));
}

void CommandLine::takesCommands(std::size_t fewest, std::size_t most) {
  fApp->require_subcommand(fewest, most);
}

void CommandLine::does(std::function<void()> run) {
  fApp->callback(std::move(run));
}

}  // namespace veltrix::ctl
