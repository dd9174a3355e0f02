#include "helper/commands/command_runner.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "helper/desktop/one_line.h"

namespace veltrix {

namespace {

using CommandNumber = std::uint64_t;

// A command on its way.
struct UnderWay {
  ButtonId button;
  CommandAction action;
  std::vector<const Attempt*> attempts;
  std::size_t next = 0;             // of `attempts`
  bool released = false;            // the button is up again
  std::optional<Error> keysReason;  // why the first keys could not be pressed
  std::optional<Error> deedReason;  // why the first attempt of any other kind failed

  bool isMakingKeys() const {
    const Attempt& attempt = *attempts[next - 1];
    return std::holds_alternative<KeyStroke>(attempt) || std::holds_alternative<KeySeries>(attempt);
  }
};

// Where keys only stand in for something better, what is wrong with that says more.
const Error& mostTelling(const UnderWay& command) {
  return command.deedReason ? *command.deedReason : *command.keysReason;
}

}  // namespace

// What others say of a failure may be anything.
CommandProblem problemOf(std::uint16_t command, const Error& error) {
  const std::string reason = oneLine(error.message);
  return reason.empty() ? problemOf(command, Error{0, "it failed", {}})
                        : CommandProblem{command, reason, phraseOf(error)};
}

struct CommandRunner::State : std::enable_shared_from_this<CommandRunner::State> {
  State(SessionKind sessionKind, CommandSession parts, const CommandSettings& actions, Report told,
        RowLookup lookup)
      : kind(sessionKind),
        session(parts),
        settings(actions),
        report(std::move(told)),
        rows(std::move(lookup)) {}

  void press(const ButtonPacket& packet);
  void release(ButtonId button);
  void makeNextAttempt(CommandNumber number);
  void make(CommandNumber number, const UnderWay& command, const Attempt& attempt, Ended ended);
  void pressShortcut(CommandNumber number, const Result<KeyStroke>& shortcut, const Ended& ended);
  void makeChosen(const CommandAction& action, ChosenThing thing, Ended ended);
  void attemptEnded(CommandNumber number, const Status& status);

  const SessionKind kind;
  CommandSession session;
  const CommandSettings& settings;
  const Report report;
  const RowLookup rows;
  std::map<CommandNumber, UnderWay> underWay;
  CommandNumber lastNumber = 0;
};

CommandRunner::CommandRunner(SessionKind kind, CommandSession session, const CommandSettings& settings,
                             Report report, RowLookup rows)
    : fState(std::make_shared<State>(kind, session, settings, std::move(report), std::move(rows))) {}

CommandRunner::~CommandRunner() = default;

void CommandRunner::take(const ButtonPacket& packet) {
  if (packet.forHelper == 0)
    return;
  if (packet.pressed != 0)
    fState->press(packet);
  else
    fState->release({packet.number, packet.slot});
}

void CommandRunner::forgetButtons() {
  for (auto& [number, command] : fState->underWay) command.released = true;
}

void CommandRunner::State::press(const ButtonPacket& packet) {
  const ButtonId button{packet.number, packet.slot};
  if (session.keys.stop(button))
    return;
  release(button);  // of which nobody may have told
  CommandAction action = settings.actionOf(packet.device, packet.slot);
  // The settings have changed, and the driver had not heard of it when the button went down.
  if (action.command != packet.command)
    return;
  const std::span<const CommandRow> all = rows(action.command);
  std::vector<const Attempt*> attempts;
  for (const CommandRow& row : all) {
    if (isFor(row, kind))
      attempts.push_back(&row.attempt);
  }
  if (all.empty())
    return;
  if (attempts.empty())
    return report(problemOf(action.command, Error{0, "it is not possible on this desktop", {}}));
  if (underWay.size() >= kMostCommandsUnderWay)
    return report(problemOf(action.command, Error{0, "too many commands before it have not ended yet", {}}));
  underWay[++lastNumber] = {button, std::move(action), std::move(attempts), 0, false, {}, {}};
  makeNextAttempt(lastNumber);
}

void CommandRunner::State::release(ButtonId button) {
  for (auto& [number, command] : underWay) {
    if (command.button == button)
      command.released = true;
  }
  session.keys.release(button);
}

void CommandRunner::State::makeNextAttempt(CommandNumber number) {
  UnderWay& command = underWay.at(number);
  const Attempt& attempt = *command.attempts[command.next++];
  const bool isTap = command.released && command.isMakingKeys();
  const ButtonId button = command.button;
  // By value, as the command may have ended when this comes back.
  make(number, UnderWay(command), attempt, [weak = weak_from_this(), number](const Status& status) {
    if (const auto self = weak.lock())
      self->attemptEnded(number, status);
  });
  if (isTap)
    session.keys.release(button);
}

void CommandRunner::State::make(CommandNumber number, const UnderWay& command, const Attempt& attempt,
                                Ended ended) {
  struct Maker {
    State& state;
    CommandNumber number;
    const UnderWay& command;
    Ended& ended;

    void operator()(const KeyStroke& it) const { state.session.keys.hold(command.button, it, ended); }
    void operator()(const KeySeries& it) const { state.session.keys.typeSeries(command.button, it, ended); }
    void operator()(const DisplayAttempt& it) const { state.session.display.operate(it, ended); }
    void operator()(const CompositorAttempt& it) const {
      state.session.display.tellCompositor(it.text, ended);
    }
    void operator()(const BusAttempt& it) const { state.session.bus.call(it, ended); }
    void operator()(const PlayerAttempt& it) const { state.session.bus.controlPlayer(it, ended); }
    void operator()(const ProgramAttempt& it) const { state.session.launcher.start(it, ended); }
    void operator()(const SettingAttempt& it) const { state.session.launcher.change(it, ended); }
    void operator()(const PlaceAttempt& it) const { state.session.launcher.open(it.place, ended); }
    void operator()(const ChosenAttempt& it) const { state.makeChosen(command.action, it.thing, ended); }
    void operator()(const ShortcutAttempt& it) const {
      state.session.launcher.readShortcut(
          it, [weak = state.weak_from_this(), on = number, told = ended](const Result<KeyStroke>& shortcut) {
            if (const auto self = weak.lock())
              self->pressShortcut(on, shortcut, told);
          });
    }
    void operator()(const SnippetAttempt& it) const {
      state.session.keys.type(command.button, state.settings.snippet(it.number), ended);
    }
  };
  std::visit(Maker{*this, number, command, ended}, attempt);
}

// The button may have come up while the settings were read.
void CommandRunner::State::pressShortcut(CommandNumber number, const Result<KeyStroke>& shortcut,
                                         const Ended& ended) {
  const auto found = underWay.find(number);
  if (found == underWay.end() || !shortcut)
    return ended(shortcut ? Status(Done{}) : shortcut.error());
  const ButtonId button = found->second.button;
  const bool isTap = found->second.released;
  session.keys.hold(button, shortcut.value(), ended);
  if (isTap)
    session.keys.release(button);
}

void CommandRunner::State::makeChosen(const CommandAction& action, ChosenThing thing, Ended ended) {
  switch (thing) {
    case ChosenThing::kItem:
      return session.launcher.openItem(action.text, std::move(ended));
    case ChosenThing::kApplication:
      return session.launcher.launch(action.bundleId, action.text, std::move(ended));
    case ChosenThing::kUrl:
      return session.launcher.openUrl(action.text, std::move(ended));
    case ChosenThing::kScript:
      return session.launcher.runScript(action.text, std::move(ended));
  }
}

void CommandRunner::State::attemptEnded(CommandNumber number, const Status& status) {
  const auto found = underWay.find(number);
  if (found == underWay.end())
    return;
  UnderWay& command = found->second;
  if (!status) {
    std::optional<Error>& reason = command.isMakingKeys() ? command.keysReason : command.deedReason;
    if (!reason)
      reason = status.error();
    if (command.next < command.attempts.size())
      return makeNextAttempt(number);
  }
  const UnderWay over = std::move(command);
  underWay.erase(found);
  if (!status)
    report(problemOf(over.action.command, mostTelling(over)));
}

}  // namespace veltrix
