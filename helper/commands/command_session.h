#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "helper/commands/attempt.h"
#include "util/result.h"

// The session as commands see it. Nothing here waits: each call returns at once and says later, once and from
// the event loop or before it returns, how it ended. An error is one line for a person.
namespace veltrix {

using Ended = std::function<void(const Status&)>;
using ShortcutRead = std::function<void(const Result<KeyStroke>&)>;

// A button, chord or wheel of one trackball.
struct ButtonId {
  std::uint32_t device = 0;  // the driver's number for it
  std::uint16_t slot = 0;    // of the record

  friend bool operator==(const ButtonId& a, const ButtonId& b) = default;
};

class KeyOutput {
 public:
  virtual ~KeyOutput() = default;
  // Presses the keys and keeps them until release(button). What is being typed goes on first.
  virtual void hold(ButtonId button, const KeyStroke& stroke, Ended ended) = 0;
  // Nothing when the button holds no keys.
  virtual void release(ButtonId button) = 0;
  // UTF-8. Ends when the last key is up, or with an error that says what could not be typed or that a key
  // stopped it. One text is typed at a time; a second one waits for the first.
  virtual void type(ButtonId button, std::string text, Ended ended) = 0;
  // Presses these keys one after the other, which counts as a text.
  virtual void typeSeries(ButtonId button, const KeySeries& series, Ended ended) = 0;
  // Stops the text that this button began. False when there is none.
  virtual bool stop(ButtonId button) = 0;
};

class DisplayControl {
 public:
  virtual ~DisplayControl() = default;
  virtual void operate(const DisplayAttempt& attempt, Ended ended) = 0;
  virtual void tellCompositor(std::string_view command, Ended ended) = 0;
};

class BusCalls {
 public:
  virtual ~BusCalls() = default;
  virtual void call(const BusAttempt& attempt, Ended ended) = 0;
  virtual void controlPlayer(const PlayerAttempt& attempt, Ended ended) = 0;
};

class Launcher {
 public:
  virtual ~Launcher() = default;
  virtual void start(const ProgramAttempt& attempt, Ended ended) = 0;
  virtual void change(const SettingAttempt& attempt, Ended ended) = 0;
  // Hands over the keys of a shortcut, or why there are none.
  virtual void readShortcut(const ShortcutAttempt& attempt, ShortcutRead read) = 0;
  virtual void open(Place place, Ended ended) = 0;
  // A path, "~" and what follows it below the home folder.
  virtual void openItem(const std::string& path, Ended ended) = 0;
  // An identifier of an installed application, or the path of an application folder or a desktop entry;
  // `identifier` first, when it is not empty and leads to one.
  virtual void launch(const std::string& identifier, const std::string& path, Ended ended) = 0;
  virtual void openUrl(const std::string& url, Ended ended) = 0;
  virtual void runScript(const std::string& text, Ended ended) = 0;
};

struct CommandSession {
  KeyOutput& keys;
  DisplayControl& display;
  BusCalls& bus;
  Launcher& launcher;
};

}  // namespace veltrix
