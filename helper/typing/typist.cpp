#include "helper/typing/typist.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "driverlink/packet_rules.h"
#include "helper/typing/key_steps.h"
#include "platform/text_encoding.h"
#include "util/phrase.h"

namespace veltrix {

namespace {

constexpr std::size_t kMostSent = 2;  // what the driver takes at a time
constexpr std::size_t kMostNamed = 5;

const Error kNoDriver{0, "the driver is not connected", std::nullopt};
const Error kDriverGone{0, "the driver has gone", std::nullopt};
const Error kNoAnswer{0, "the driver does not answer", std::nullopt};
const Error kNoKeyboard{0, "the driver has no virtual keyboard", std::nullopt};
const Error kNoLayout{0, "the keyboard layout is not known", std::nullopt};
const Error kNoSuchKey{0, "no key of the keyboard layout produces it", std::nullopt};
const Error kStoppedByKey{0, "a key of the keyboard stopped the typing", std::nullopt};

// "the keyboard layout has no U+4E16 世, ..."
Error describeMissing(const std::vector<char32_t>& missing) {
  std::string text;
  for (std::size_t i = 0; i < missing.size() && i < kMostNamed; ++i) {
    char number[16];
    std::snprintf(number, sizeof number, "U+%04X ", static_cast<unsigned>(missing[i]));
    text += (i == 0 ? "" : ", ") + std::string(number);
    appendUtf8(text, missing[i]);
  }
  if (missing.size() <= kMostNamed)
    return phrasedError(0, {"the keyboard layout has no %1", {given(text)}});
  const std::string rest = std::to_string(missing.size() - kMostNamed);
  return phrasedError(0, {"the keyboard layout has no %1 and %2 more", {given(text), given(rest)}});
}

void tell(const Ended& ended, const Status& status) {
  if (ended != nullptr)
    ended(status);
}

}  // namespace

void Typist::hold(ButtonId button, const KeyStroke& stroke, Ended ended) {
  if (isHolding(button))
    fOrders.push_back({Order::Kind::kRelease, button, {}, {}, nullptr});
  fOrders.push_back({Order::Kind::kHold, button, stroke, {}, std::move(ended)});
  proceed();
}

void Typist::release(ButtonId button) {
  if (!isHolding(button))
    return;
  fOrders.push_back({Order::Kind::kRelease, button, {}, {}, nullptr});
  proceed();
}

void Typist::type(ButtonId button, std::string text, Ended ended) {
  fOrders.push_back({Order::Kind::kType, button, {}, std::move(text), std::move(ended)});
  proceed();
}

void Typist::typeSeries(ButtonId button, const KeySeries& series, Ended ended) {
  fOrders.push_back({Order::Kind::kType, button, {}, {}, std::move(ended), series});
  proceed();
}

bool Typist::stop(ButtonId button) {
  if (fText && fText->button == button) {
    if (!fText->isStopped && fText->next > 0)
      fAround.sender.stopTyping();
    fText->isStopped = true;
    fText->error.reset();  // that is what was wanted
    proceed();
    return true;
  }
  const auto waiting = std::find_if(fOrders.begin(), fOrders.end(), [&](const Order& order) {
    return order.kind == Order::Kind::kType && order.button == button;
  });
  if (waiting == fOrders.end())
    return false;
  const Ended ended = std::move(waiting->ended);
  fOrders.erase(waiting);
  tell(ended, Done{});
  return true;
}

// By the last thing that was asked for on its behalf.
bool Typist::isHolding(ButtonId button) const {
  const auto isOfButton = [&](const auto& other) { return other.button == button; };
  const auto last = std::find_if(fOrders.rbegin(), fOrders.rend(), [&](const Order& order) {
    return isOfButton(order) && order.kind != Order::Kind::kType;
  });
  if (last != fOrders.rend())
    return last->kind == Order::Kind::kHold;
  return std::any_of(fHeld.begin(), fHeld.end(), isOfButton);
}

// Whoever is told of an end may ask for more, which is served by the call that is on already.
void Typist::proceed() {
  if (fIsProceeding)
    return;
  fIsProceeding = true;
  while (takeStep()) {
  }
  fIsProceeding = false;
  setAlarm();
}

// False when there is nothing to do before the driver answers.
bool Typist::takeStep() {
  const bool isFull = fSent.size() >= kMostSent;
  if (fText && !fText->isStopped && fText->next < fText->steps.size()) {
    if (!isFull)
      continueText();
    return !isFull;
  }
  if (fText) {
    if (std::any_of(fSent.begin(), fSent.end(), [](const Sent& sent) { return sent.isText; }))
      return false;
    endText();
    return true;
  }
  if (fOrders.empty() || isFull)
    return false;
  Order order = std::move(fOrders.front());
  fOrders.pop_front();
  begin(std::move(order));
  return true;
}

void Typist::begin(Order order) {
  if (order.kind == Order::Kind::kHold)
    beginHold(order);
  else if (order.kind == Order::Kind::kType)
    beginText(std::move(order));
  else
    letGo(order.button);
}

void Typist::beginHold(const Order& order) {
  const auto press = fAround.planner.keysFor(order.stroke);
  if (!press)
    return tell(order.ended, kNoSuchKey);
  if (fHeld.size() >= kMostHoldingButtons)
    return tell(order.ended, Error{0, "too many buttons hold keys", std::nullopt});
  fHeld.push_back({order.button, *press});
  std::vector<KeyStep> steps;
  for (const std::uint16_t code : keysOf(*press)) {
    if (fHolders[code]++ == 0)
      steps.push_back({code, 1});
  }
  if (steps.empty())
    return tell(order.ended, Done{});
  // Without the driver no key is down, and none is to come down with the next one.
  if (!send(steps, false, order.ended)) {
    fHeld.clear();
    fHolders.clear();
    tell(order.ended, kNoDriver);
  }
}

void Typist::beginText(Order order) {
  std::vector<KeyStep> releases;
  for (auto held = fHeld.rbegin(); held != fHeld.rend(); ++held) addReleases(*held, releases);
  fHeld.clear();
  if (!releases.empty())
    send(releases, false, nullptr);
  const auto planned = planOf(order);
  if (!planned)
    return tell(order.ended, planned.error());
  const TypingPlan& plan = planned.value();
  fText = Text{order.button, std::move(order.ended), stepsOf(plan.presses), 0, std::nullopt, false};
  if (plan.isComposed)
    fText->interval = kComposingInterval;
  if (!plan.missing.empty())
    fText->error = describeMissing(plan.missing);
}

// Of a series without one of its keys nothing is pressed, as the others would do something else.
Result<TypingPlan> Typist::planOf(const Order& order) const {
  if (!order.series) {
    auto plan = fAround.planner.plan(order.text);
    return plan ? Result<TypingPlan>(std::move(*plan)) : kNoLayout;
  }
  TypingPlan plan;
  for (const KeyStroke& stroke : order.series->strokes) {
    if (stroke.keysym == 0)
      break;
    const auto press = fAround.planner.keysFor(stroke);
    if (!press)
      return kNoSuchKey;
    plan.presses.push_back(*press);
  }
  return plan;
}

bool Typist::letGo(ButtonId button) {
  const auto held =
      std::find_if(fHeld.begin(), fHeld.end(), [&](const Held& other) { return other.button == button; });
  if (held == fHeld.end())
    return false;
  std::vector<KeyStep> steps;
  addReleases(*held, steps);
  fHeld.erase(held);
  return steps.empty() || send(steps, false, nullptr);
}

void Typist::addReleases(const Held& held, std::vector<KeyStep>& steps) {
  const std::vector<std::uint16_t> keys = keysOf(held.press);
  for (auto code = keys.rbegin(); code != keys.rend(); ++code) {
    if (--fHolders[*code] > 0)
      continue;
    fHolders.erase(*code);
    steps.push_back({*code, 0});
  }
}

void Typist::continueText() {
  Text& text = *fText;
  const std::size_t count = std::min(kMostKeySteps, text.steps.size() - text.next);
  const std::span<const KeyStep> steps(text.steps.data() + text.next, count);
  text.next += count;
  if (send(steps, true, nullptr))
    return;
  text.isStopped = true;
  text.error = kNoDriver;
}

void Typist::endText() {
  const Text text = std::move(*fText);
  fText.reset();
  tell(text.ended, text.error ? Status(*text.error) : Status(Done{}));
}

bool Typist::send(std::span<const KeyStep> steps, bool isText, Ended ended) {
  auto packet = makePacket<TypeKeysPacket>();
  packet.id = ++fLastId;
  packet.count = static_cast<std::uint8_t>(steps.size());
  packet.stoppable = isText ? 1 : 0;
  packet.interval = isText ? fText->interval : kStrokeInterval;
  std::copy(steps.begin(), steps.end(), packet.step);
  if (!fAround.sender.typeKeys(packet))
    return false;
  const std::chrono::milliseconds time(packet.count * packet.interval);
  fSent.push_back({packet.id, isText, time, std::move(ended)});
  return true;
}

void Typist::typed(const KeysTypedPacket& packet) {
  const auto sent =
      std::find_if(fSent.begin(), fSent.end(), [&](const Sent& other) { return other.id == packet.id; });
  if (sent == fSent.end())
    return;
  const Sent answered = std::move(*sent);
  fSent.erase(sent);
  fDue.reset();
  const auto outcome = static_cast<TypingOutcome>(packet.outcome);
  const Error& error = outcome == TypingOutcome::kNoKeyboard ? kNoKeyboard : kStoppedByKey;
  if (outcome == TypingOutcome::kNoKeyboard) {
    fHeld.clear();
    fHolders.clear();
  }
  if (answered.isText && fText && !fText->isStopped && outcome != TypingOutcome::kTyped) {
    fText->isStopped = true;
    fText->error = error;
  }
  tell(answered.ended, outcome == TypingOutcome::kTyped ? Status(Done{}) : Status(error));
  proceed();
}

void Typist::forget() {
  endEverything(kDriverGone);
}

void Typist::timePassed() {
  if (!fDue || fAround.now() < *fDue)
    return setAlarm();
  fAround.sender.hangUp();
  endEverything(kNoAnswer);
}

void Typist::endEverything(const Error& error) {
  fHeld.clear();
  fHolders.clear();
  std::vector<Ended> ends;
  for (Sent& sent : std::exchange(fSent, {})) ends.push_back(std::move(sent.ended));
  if (fText)
    ends.push_back(std::move(fText->ended));
  fText.reset();
  for (Order& order : std::exchange(fOrders, {})) ends.push_back(std::move(order.ended));
  setAlarm();
  for (const Ended& ended : ends) tell(ended, error);
}

// The time begins anew with each answer.
void Typist::setAlarm() {
  if (fSent.empty()) {
    fDue.reset();
  } else if (!fDue) {
    fDue = fAround.now() + kDriverPatience;
    for (const Sent& sent : fSent) *fDue += sent.time;
  }
  fAround.setAlarm(fDue);
}

}  // namespace veltrix
