#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <variant>

// The ways to carry out a command. A command has a list of them, in the order in which they are tried; the
// table of commands consists of these.
namespace veltrix {

// Keys held around another; the modifiers as programs know them, whatever keys have them under the layout.
inline constexpr std::uint8_t kHoldShift = 0x01;
inline constexpr std::uint8_t kHoldControl = 0x02;
inline constexpr std::uint8_t kHoldAlt = 0x04;
inline constexpr std::uint8_t kHoldSuper = 0x08;

// The key that produces a keysym under the layout of the moment, with these modifiers. Held with the button.
struct KeyStroke {
  std::uint8_t modifiers = 0;
  std::uint32_t keysym = 0;  // as xkbcommon-keysyms.h has them, a letter in its small form

  friend bool operator==(const KeyStroke& a, const KeyStroke& b) = default;
};

inline constexpr std::size_t kMostStrokes = 4;

// Keys one after the other, for what a desktop has no single shortcut for. Nothing stays down.
struct KeySeries {
  std::array<KeyStroke, kMostStrokes> strokes;  // up to the first without a keysym
};

// What is asked of the window manager by the protocols that all of them share under X, or of the X server.
enum class DisplayOperation : std::uint8_t {
  kClose,
  kMinimize,
  kToggleMaximized,
  kToggleAbove,
  kPreviousWorkspace,
  kNextWorkspace,
  kTakeToPreviousWorkspace,
  kTakeToNextWorkspace,
  kWorkspace,  // the one of that number
  kToggleShowDesktop,
  kTurnOffScreen,
};
struct DisplayAttempt {
  DisplayOperation operation;
  std::uint8_t workspace = 0;  // from 1, with kWorkspace
  // A window that is taken along is shown on all workspaces while they change, so that it is never without
  // the keys.
  bool stays = false;
};

// A command in the compositor's own language, where it has a socket for such.
struct CompositorAttempt {
  const char* text;
};

// A dictionary of options with one of them.
struct BusOptions {
  const char* key;
  bool value;
};

using BusArgument = std::variant<std::monostate, bool, std::int32_t, std::uint32_t, const char*, BusOptions>;
inline constexpr std::size_t kMostBusArguments = 3;

struct BusAttempt {
  enum class Bus : std::uint8_t { kSession, kSystem };
  Bus bus;
  const char* service;
  const char* path;
  const char* interface;
  const char* method;
  std::array<BusArgument, kMostBusArguments> arguments{};  // up to the first empty one
  bool starts = false;                                     // the service, when it does not run yet
  bool asksPerson = false;   // the answer may have to wait until somebody has agreed
  bool answersLate = false;  // the answer comes once a question has been answered: none in time is a good one
};

// Of the media player that was active last.
struct PlayerAttempt {
  const char* method;       // of org.mpris.MediaPlayer2.Player
  std::int64_t offset = 0;  // microseconds, of Seek
};

inline constexpr std::size_t kMostProgramArguments = 6;

// A program that is looked for in PATH; there is no shell.
struct ProgramAttempt {
  std::array<const char*, kMostProgramArguments> arguments;  // the program first, up to the first null
};

// A switch in the desktop's settings that is turned over, or a number in them that is moved.
struct SettingAttempt {
  const char* schema;
  const char* key;
  double step = 0;  // 0 turns a boolean over
  double least = 0;
  double most = 0;  // a moved number is kept between these, both included
};

// The keys that the user's settings give to something; fails where they give it none. Held with the button.
struct ShortcutAttempt {
  const char* schema;
  const char* key;
};

// What is opened without a choice of the user's.
enum class Place : std::uint8_t {
  kBrowser,
  kMail,
  kFileManager,
  kTerminal,
  kCalculator,
  kSystemSettings,
  kHome,
  kDocuments,
  kDownloads,
  kTrackballSettings,
};
struct PlaceAttempt {
  Place place;
};

// What the action itself says: its "str" and "bndl".
enum class ChosenThing : std::uint8_t { kItem, kApplication, kUrl, kScript };
struct ChosenAttempt {
  ChosenThing thing;
};

// Types a snippet of the settings.
struct SnippetAttempt {
  std::uint8_t number;  // 1 to 10
};

using Attempt = std::variant<KeyStroke, KeySeries, DisplayAttempt, CompositorAttempt, BusAttempt,
                             PlayerAttempt, ProgramAttempt, SettingAttempt, PlaceAttempt, ChosenAttempt,
                             SnippetAttempt, ShortcutAttempt>;

}  // namespace veltrix
