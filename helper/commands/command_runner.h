#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "driverlink/packets.h"
#include "helper/commands/command_session.h"
#include "helper/commands/command_table.h"
#include "platform/property_list.h"

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
  std::string reason;  // one line
};

// Carries out commands: looks up the rows of a command that fit this session and makes one attempt after the
// other until one works. Never waits.
class CommandRunner {
 public:
  using Report = std::function<void(const CommandProblem&)>;

  // The settings and the parts of the session must outlive the runner.
  CommandRunner(SessionKind kind, CommandSession session, const CommandSettings& settings, Report report);
  ~CommandRunner();
  CommandRunner(const CommandRunner&) = delete;
  CommandRunner& operator=(const CommandRunner&) = delete;

  // A button of a trackball of which the driver says that the helper carries it out; others are passed over.
  void take(const ButtonPacket& packet);

  // The driver is gone, and every key with it.
  void forgetButtons();

 private:
  struct State;
  std::shared_ptr<State> fState;
};

}  // namespace veltrix
