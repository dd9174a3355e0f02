#include "helper/desktop/desktop_settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <deque>
#include <utility>

#include "helper/desktop/gsettings.h"
#include "helper/desktop/one_line.h"
#include "util/phrase.h"

namespace veltrix {

namespace {

struct Change {
  SettingAttempt attempt;
  ProgramStarter::Exit ended;
};

// Numbers of some types are printed with the type before them.
std::string_view lastWord(std::string_view text) {
  const std::size_t last = text.find_last_not_of(" \n");
  text = text.substr(0, last == std::string_view::npos ? 0 : last + 1);
  return text.substr(text.rfind(' ') + 1);
}

}  // namespace

std::optional<std::string> nextSettingValue(std::string_view printed, const SettingAttempt& attempt) {
  const std::string_view word = lastWord(printed);
  if (attempt.step == 0) {
    return word == "true"    ? std::optional<std::string>("false")
           : word == "false" ? std::optional<std::string>("true")
                             : std::nullopt;
  }
  double value = 0;
  const auto read = std::from_chars(word.data(), word.data() + word.size(), value);
  if (read.ec != std::errc() || read.ptr != word.data() + word.size() || !std::isfinite(value)) {
    return {};
  }
  const double moved = std::clamp(value + attempt.step, attempt.least, attempt.most);
  std::array<char, 64> text = {};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), moved);
  return std::string(text.data(), written.ptr);
}

struct DesktopSettings::State : std::enable_shared_from_this<State> {
  State(ProgramStarter& itsStarter, std::chrono::microseconds itsGrace)
      : starter(itsStarter), grace(itsGrace) {}

  void begin() {
    const SettingAttempt& attempt = waiting.front().attempt;
    run({"get", attempt.schema, attempt.key},
        [](State& state, const std::string& printed) { state.takeValue(printed); });
  }

  void takeValue(const std::string& printed) {
    const SettingAttempt& attempt = waiting.front().attempt;
    const std::optional<std::string> next = nextSettingValue(printed, attempt);
    if (!next) {
      end(unchanged(printed.empty() ? Phrase{"no answer", {}} : given(oneLine(printed))));
      return;
    }
    // What follows the key is a value, whatever it looks like: a negative number is no option.
    run({"set", attempt.schema, attempt.key, *next},
        [](State& state, const std::string& /*printed*/) { state.end(Done()); });
  }

  void run(std::vector<std::string> words, void (*then)(State&, const std::string& printed)) {
    runGsettings(starter, std::move(words), grace,
                 [kept = weak_from_this(), then](const Result<std::string>& printed) {
                   const auto state = kept.lock();
                   if (state != nullptr && printed) {
                     then(*state, printed.value());
                   } else if (state != nullptr) {
                     state->end(state->unchanged(phraseOf(printed.error())));
                   }
                 });
  }

  Error unchanged(const Phrase& why) const {
    const SettingAttempt& attempt = waiting.front().attempt;
    const std::string name = std::string(attempt.schema) + " " + attempt.key;
    return phrasedError(0, {"the setting %1 cannot be changed: %2", {given(name), why}});
  }

  void end(const Status& status) {
    const auto self = shared_from_this();
    const ProgramStarter::Exit ended = std::move(waiting.front().ended);
    waiting.pop_front();
    if (!waiting.empty()) {
      begin();
    }
    ended(status);
  }

  ProgramStarter& starter;
  std::chrono::microseconds grace;
  std::deque<Change> waiting;  // the first one is being made
};

DesktopSettings::DesktopSettings(ProgramStarter& starter, std::chrono::microseconds grace)
    : fState(std::make_shared<State>(starter, grace)) {}

DesktopSettings::~DesktopSettings() = default;

void DesktopSettings::change(const SettingAttempt& attempt, ProgramStarter::Exit ended) {
  fState->waiting.push_back({attempt, std::move(ended)});
  if (fState->waiting.size() == 1) {
    fState->begin();
  }
}

}  // namespace veltrix
