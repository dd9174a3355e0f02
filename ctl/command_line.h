#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace CLI {  // NOLINT(readability-identifier-naming): the name of the library
class App;
class Option;
}  // namespace CLI

// What commands ask of the parser of the command line. Its own header takes longer to compile than all of a
// command, so one source reads it for all of them.
namespace veltrix::ctl {

// An option, a flag or a word without a name. Belongs to the parser; a copy means the same one.
class CommandOption {
 public:
  explicit CommandOption(CLI::Option& option) : fOption(&option) {}

  CommandOption& required();
  // How many words it takes, both included.
  CommandOption& takes(int fewest, int most);
  // One word each time that it is given, and as often as wanted.
  CommandOption& repeats();
  CommandOption& oneOf(std::initializer_list<const char*> words);
  // Both included.
  CommandOption& inRange(std::int32_t first, std::int32_t last);
  // Only together with the other one, or never.
  CommandOption& needs(CommandOption other);
  CommandOption& excludes(CommandOption other);

 private:
  CLI::Option* fOption;
};

// A command, or the program itself. Belongs to the parser; a copy means the same one.
class CommandLine {
 public:
  explicit CommandLine(CLI::App& app) : fApp(&app) {}

  CommandLine addCommand(const char* name, const char* description);
  // The value is written when the command line is read, so it has to stay until the command is carried out. A
  // word that is no number where one is wanted is an error of the command line.
  CommandOption addOption(const char* names, std::string& value, const char* description);
  CommandOption addOption(const char* names, std::int32_t& value, const char* description);
  CommandOption addOption(const char* names, std::vector<std::string>& value, const char* description);
  CommandOption addFlag(const char* names, bool& value, const char* description);
  // How many commands below this one are given, both included.
  void takesCommands(std::size_t fewest, std::size_t most);
  // Carried out once the whole command line has been read, after those of the commands below it.
  void does(std::function<void()> run);

 private:
  CLI::App* fApp;
};

}  // namespace veltrix::ctl
