#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include "driverlink/packets.h"
#include "helper/commands/command_session.h"
#include "helper/commands/command_table.h"
#include "util/phrase.h"

namespace veltrix {

// What a button is to do, as the settings say it: its action, that of the general settings in the place of
// command 200.
struct CommandAction {
  std::uint16_t command = 0;
  std::string text;      // "str"
  std::string bundleId;  // "bndl"
};

// Where the runner learns what the settings say.
class CommandSettings {
 public:
  virtual ~CommandSettings() = default;
  virtual CommandAction actionOf(const DeviceAddress& device, std::uint16_t slot) const = 0;
  virtual std::string snippet(std::uint8_t number) const = 0;  // 1 to 10
};

// A command that did not do what its name says.
struct CommandProblem {
  std::uint16_t command = 0;
  std::string reason;  // in English: one line of UTF-8, at most kLongestReason bytes
  Phrase phrase;       // the same in full, as it can be told in another language
};
inline constexpr std::size_t kLongestReason = 210;

CommandProblem problemOf(std::uint16_t command, const Error& error);

// Commands that have begun and not ended; one more is refused, so that what hangs cannot pile up.
inline constexpr std::size_t kMostCommandsUnderWay = 64;

// Carries out commands: looks up the rows of a command that fit this session and makes one attempt after the
// other until one works. Never waits.
class CommandRunner {
 public:
  using Report = std::function<void(const CommandProblem&)>;
  using RowLookup = std::function<std::span<const CommandRow>(std::uint16_t command)>;

  // The settings, the parts of the session and the rows must outlive the runner.
  CommandRunner(SessionKind kind, CommandSession session, const CommandSettings& settings, Report report,
                RowLookup rows = rowsOfCommand);
  ~CommandRunner();
  CommandRunner(const CommandRunner&) = delete;
  CommandRunner& operator=(const CommandRunner&) = delete;

  // A button of a trackball of which the driver says that the helper carries it out; others are passed over.
  void take(const ButtonPacket& packet);

  // The driver is gone, and every key with it. What has begun goes on; keys that it still presses are let go
  // at once.
  void forgetButtons();

 private:
  struct State;
  std::shared_ptr<State> fState;
};

}  // namespace veltrix
