#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "helper/commands/command_session.h"

namespace veltrix::testing {

// A session that only writes down what is asked of it. An attempt whose line begins with a key of `failures`
// fails with that reason; with `holds` set, everything waits for endNext().
class FakeSession final : public KeyOutput, public DisplayControl, public BusCalls, public Launcher {
 public:
  CommandSession parts() { return {*this, *this, *this, *this}; }

  void hold(ButtonId button, const KeyStroke& stroke, Ended ended) override {
    take(
        "hold " + name(button) + " " + std::to_string(stroke.modifiers) + "+" + std::to_string(stroke.keysym),
        std::move(ended));
  }
  void release(ButtonId button) override { log.push_back("release " + name(button)); }
  void type(ButtonId button, std::string text, Ended ended) override {
    take("type " + name(button) + " " + text, std::move(ended));
  }
  void typeSeries(ButtonId button, const KeySeries& series, Ended ended) override {
    std::string words = "series " + name(button);
    for (const KeyStroke& stroke : series.strokes) {
      words += " " + std::to_string(stroke.modifiers) + "+" + std::to_string(stroke.keysym);
    }
    take(words, std::move(ended));
  }
  bool stop(ButtonId button) override {
    if (!isTyping || *isTyping != button)
      return false;
    log.push_back("stop " + name(button));
    return true;
  }
  void operate(const DisplayAttempt& attempt, Ended ended) override {
    take("operate " + std::to_string(static_cast<int>(attempt.operation)), std::move(ended));
  }
  void tellCompositor(std::string_view command, Ended ended) override {
    take("compositor " + std::string(command), std::move(ended));
  }
  void call(const BusAttempt& attempt, Ended ended) override {
    take(std::string("call ") + attempt.method, std::move(ended));
  }
  void controlPlayer(const PlayerAttempt& attempt, Ended ended) override {
    take(std::string("player ") + attempt.method, std::move(ended));
  }
  void start(const ProgramAttempt& attempt, Ended ended) override {
    take(std::string("start ") + attempt.arguments[0], std::move(ended));
  }
  void change(const SettingAttempt& attempt, Ended ended) override {
    take(std::string("change ") + attempt.key, std::move(ended));
  }
  // There is one for everything but what `failures` has: Control and c.
  void readShortcut(const ShortcutAttempt& attempt, ShortcutRead read) override {
    take(std::string("shortcut ") + attempt.key, [read = std::move(read)](const Status& status) {
      read(status ? Result<KeyStroke>(KeyStroke{kHoldControl, 'c'}) : status.error());
    });
  }
  void open(Place place, Ended ended) override {
    take("open " + std::to_string(static_cast<int>(place)), std::move(ended));
  }
  void openItem(const std::string& path, Ended ended) override { take("item " + path, std::move(ended)); }
  void launch(const std::string& identifier, const std::string& path, Ended ended) override {
    take("launch " + identifier + "|" + path, std::move(ended));
  }
  void openUrl(const std::string& url, Ended ended) override { take("url " + url, std::move(ended)); }
  void runScript(const std::string& text, Ended ended) override { take("script " + text, std::move(ended)); }

  // Ends what has waited longest.
  void endNext(const Status& status = Done{}) {
    const Ended ended = std::move(waiting.front());
    waiting.erase(waiting.begin());
    ended(status);
  }
  std::vector<std::string> taken() { return std::exchange(log, {}); }

  bool holds = false;
  std::optional<ButtonId> isTyping;
  std::map<std::string, std::string> failures;
  std::vector<std::string> log;
  std::vector<Ended> waiting;

 private:
  static std::string name(ButtonId button) {
    return std::to_string(button.device) + "/" + std::to_string(button.slot);
  }
  void take(const std::string& what, Ended ended) {
    log.push_back(what);
    if (holds)
      return waiting.push_back(std::move(ended));
    for (const auto& [start, reason] : failures) {
      if (what.starts_with(start))
        return ended(Error{0, reason, std::nullopt});
    }
    ended(Done{});
  }
};

}  // namespace veltrix::testing
