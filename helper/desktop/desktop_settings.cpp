#include "helper/desktop/desktop_settings.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <deque>
#include <utility>

#include "helper/desktop/one_line.h"
#include "helper/desktop/program_output.h"
#include "util/file_descriptor.h"
#include "util/phrase.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

constexpr const char* kProgram = "gsettings";
constexpr std::size_t kLongestValue = 256;

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
    output.reset(memfd_create("setting", MFD_CLOEXEC));
    if (!output) {
      end(systemError(errno, "cannot run", kProgram));
      return;
    }
    run({kProgram, "get", waiting.front().attempt.schema, waiting.front().attempt.key},
        [](State& state) { state.takeValue(); });
  }

  void takeValue() {
    const std::string printed = textFromStart(output.get(), kLongestValue);
    const SettingAttempt& attempt = waiting.front().attempt;
    const std::optional<std::string> next = nextSettingValue(printed, attempt);
    if (!next) {
      end(unchanged(printed.empty() ? Phrase{"no answer", {}} : given(oneLine(printed))));
      return;
    }
    // What follows the key is a value, whatever it looks like: a negative number is no option.
    run({kProgram, "set", attempt.schema, attempt.key, *next}, [](State& state) { state.end(Done()); });
  }

  void run(std::vector<std::string> arguments, void (*then)(State&)) {
    Program program;
    program.arguments = std::move(arguments);
    program.output = output.get();
    starter.startAndWatch(program, grace, [kept = weak_from_this(), then](const Status& status) {
      const auto state = kept.lock();
      if (state != nullptr && status) {
        then(*state);
      } else if (state != nullptr) {
        state->end(state->unchanged(phraseOf(status.error())));
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
  FileDescriptor output;
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
