#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "helper/commands/command_session.h"
#include "helper/typing/key_sender.h"
#include "helper/typing/keyboard_model.h"

namespace veltrix {

// Where the keys are under the layout of the moment.
class KeyPlanner {
 public:
  virtual ~KeyPlanner() = default;
  // Nothing when the layout is not known or has no such key.
  virtual std::optional<KeyPress> keysFor(const KeyStroke& stroke) = 0;
  // Nothing when the layout is not known.
  virtual std::optional<TypingPlan> plan(const std::string& text) = 0;
};

// The pace of a text: between two steps, of which a character takes two to four.
inline constexpr std::uint16_t kTypingInterval = 2;  // ms
// The same with dead keys among the steps. Some programs handle what those compose at once and other keys
// when they come to it, so that a program that falls behind puts one before the other.
inline constexpr std::uint16_t kComposingInterval = 5;  // ms
// The pace of the keys of one shortcut.
inline constexpr std::uint16_t kStrokeInterval = 1;  // ms

// What an order of the driver's may take beyond its own time.
inline constexpr std::chrono::seconds kDriverPatience{5};

inline constexpr std::size_t kMostHoldingButtons = 8;

// Presses keys through the driver. Everything happens in the order in which it was asked for, so that nothing
// gets between the characters of a text; keys that are held when a text begins are let go first. A text is
// typed as far as the layout has its characters.
class Typist final : public KeyOutput {
 public:
  using Clock = std::chrono::steady_clock;
  struct Surroundings {
    KeySender& sender;
    KeyPlanner& planner;
    std::function<Clock::time_point()> now;
    std::function<void(std::optional<Clock::time_point>)> setAlarm;  // when to call timePassed(), if ever
  };

  // What it refers to must outlive the typist.
  explicit Typist(Surroundings surroundings) : fAround(std::move(surroundings)) {}

  void hold(ButtonId button, const KeyStroke& stroke, Ended ended) override;
  void release(ButtonId button) override;
  void type(ButtonId button, std::string text, Ended ended) override;
  void typeSeries(ButtonId button, const KeySeries& series, Ended ended) override;
  bool stop(ButtonId button) override;

  // The driver has answered.
  void typed(const KeysTypedPacket& packet);
  // The driver is gone, and every key with it; whatever was asked for ends.
  void forget();
  void timePassed();

 private:
  struct Order {
    enum class Kind { kHold, kRelease, kType };
    Kind kind;
    ButtonId button;
    KeyStroke stroke;
    std::string text;
    Ended ended;
    std::optional<KeySeries> series{};  // in the place of the text
  };
  struct Text {
    ButtonId button;
    Ended ended;
    std::vector<KeyStep> steps;
    std::size_t next = 0;
    std::optional<Error> error;  // why it is not typed to its end, or not all of it
    bool isStopped = false;
    std::uint16_t interval = kTypingInterval;  // ms
  };
  struct Sent {
    std::uint32_t id;
    bool isText;
    Clock::duration time;  // that the steps take
    Ended ended;           // null for what nobody waits for
  };
  struct Held {
    ButtonId button;
    KeyPress press;
  };

  bool isHolding(ButtonId button) const;
  void proceed();
  bool takeStep();
  void begin(Order order);
  void beginHold(const Order& order);
  void beginText(Order order);
  Result<TypingPlan> planOf(const Order& order) const;
  bool letGo(ButtonId button);
  void addReleases(const Held& held, std::vector<KeyStep>& steps);
  void continueText();
  void endText();
  bool send(std::span<const KeyStep> steps, bool isText, Ended ended);
  void endEverything(const Error& error);
  void setAlarm();

  Surroundings fAround;
  std::deque<Order> fOrders;
  std::optional<Text> fText;
  std::deque<Sent> fSent;
  std::vector<Held> fHeld;
  std::map<std::uint16_t, int> fHolders;  // of each key that is down for a button
  std::uint32_t fLastId = 0;
  bool fIsProceeding = false;
  std::optional<Clock::time_point> fDue;
};

}  // namespace veltrix
