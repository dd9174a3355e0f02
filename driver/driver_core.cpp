#include "driver/driver_core.h"

#include <algorithm>
#include <utility>

#include "driverlink/packet_rules.h"

namespace veltrix {

DriverCore::DriverCore(const PollLoop& loop, EventSink& sink, ModifierSource& modifiers,
                       KeyPressSource& keyPresses) noexcept
    : fLoop(loop), fSink(sink), fModifiers(modifiers), fKeyPresses(keyPresses), fMixer(sink) {}

std::uint32_t DriverCore::attach(std::unique_ptr<Trackball> trackball) {
  SessionHost& host = *this;
  fSessions.push_back(std::make_unique<TrackballSession>(host, std::move(trackball), ++fLastNumber));
  tellCondition(*fSessions.back());
  settleAll();
  return fLastNumber;
}

void DriverCore::detach(std::uint32_t number) noexcept {
  const auto isMeant = [=](const auto& session) { return session->number() == number; };
  const auto found = std::find_if(fSessions.begin(), fSessions.end(), isMeant);
  if (found == fSessions.end())
    return;
  (*found)->detach();
  fSessions.erase(found);
}

Microseconds DriverCore::deadline() const noexcept {
  Microseconds first = fTypist.deadline();
  for (const auto& session : fSessions) first = std::min(first, session->deadline());
  return first;
}

void DriverCore::expire(Microseconds now) noexcept {
  for (const auto& session : fSessions) session->expire(now);
  if (fTypist.deadline() <= now)
    typeWhatIsDue(now);
}

void DriverCore::helperArrived() noexcept {
  fHasHelper = true;
  fMonitored = false;
  for (const auto& session : fSessions) tellCondition(*session);
  if (fLitLamps != 0)
    tellLamps();
}

void DriverCore::apply(const ApplyPacket& packet) noexcept {
  fSettings.put(packet.device, {packet.record, packet.scroll});
  settleAll();
}

void DriverCore::withdraw(const WithdrawPacket& packet) noexcept {
  fSettings.remove(packet.device);
  settleAll();
}

bool DriverCore::typeKeys(const TypeKeysPacket& packet) noexcept {
  if (!fTypist.take(packet, fLoop.now()))
    return false;
  if (openOutputs() != 0)
    giveUpTyping(TypingOutcome::kNoKeyboard);
  else if (fTypist.deadline() <= fLoop.now())
    typeWhatIsDue(fLoop.now());
  return true;
}

void DriverCore::stopTyping() noexcept {
  while (const auto answer = fTypist.stop()) tell(*answer);
  Output& events = output();
  fTypist.releaseStopped(events);
  watchKeysNoLonger();
  write(events);
}

void DriverCore::movePointer(const MovePointerPacket& packet) noexcept {
  if (openOutputs() != 0)
    return;
  Output& events = output();
  events.relative(REL_X, packet.dx);
  events.relative(REL_Y, packet.dy);
  events.sync();
  write(events);
}

void DriverCore::helperGone() noexcept {
  fHasHelper = false;
  fMonitored = false;
  fSettings.clear();
  settleAll();
  giveUpTyping(TypingOutcome::kStopped);
  Output& events = output();
  fTypist.release(events);
  write(events);
}

void DriverCore::modifiersChanged(std::uint8_t held) noexcept {
  fHeldModifiers = held;
  for (const auto& session : fSessions) session->modifiersChanged();
}

void DriverCore::lampsChanged(std::uint16_t lit) noexcept {
  fLitLamps = lit;
  tellLamps();
}

Output& DriverCore::output() noexcept {
  fOutput.clear();
  return fOutput;
}

void DriverCore::carryOut(const TrackballSession& session, const Output& output) noexcept {
  if (!write(output) || !fHasHelper)
    return;
  for (const ButtonNotice& notice : output.notices()) {
    if (!notice.forHelper && !fMonitored)
      continue;
    auto packet = makePacket<ButtonPacket>();
    packet.device = session.address();
    packet.number = session.number();
    packet.slot = notice.slot;
    packet.command = notice.command;
    packet.pressed = notice.pressed ? 1 : 0;
    packet.forHelper = notice.forHelper ? 1 : 0;
    tell(packet);
  }
}

void DriverCore::conditionChanged(const TrackballSession& session) noexcept {
  const auto isTaken = [](const auto& other) { return other->condition() == DeviceCondition::kTaken; };
  fModifiers.watch(std::any_of(fSessions.begin(), fSessions.end(), isTaken));
  tellCondition(session);
}

int DriverCore::openOutputs() noexcept {
  return fSink.isOpen() ? 0 : fSink.open();
}

// With nothing that could carry on their movement, the trackballs are better ordinary mice.
void DriverCore::outputsFailed(int error) noexcept {
  fSink.close();
  fMixer.forget();
  for (const auto& session : fSessions) {
    if (session->condition() == DeviceCondition::kTaken)
      session->fail(error);
  }
  fTypist.release(output());
  giveUpTyping(TypingOutcome::kNoKeyboard);
}

// False when there are no outputs any more.
bool DriverCore::write(const Output& output) noexcept {
  if (!fSink.isOpen())
    return false;
  const int error = fMixer.write(output.events());
  if (error != 0)
    outputsFailed(error);
  return error == 0;
}

void DriverCore::settle(TrackballSession& session, int outputError) noexcept {
  const TrackballSettings* settings = fSettings.find(session.address());
  if (settings == nullptr || settings->record.driverEnabled == 0)
    session.leaveAlone();
  else if (outputError != 0)
    session.fail(outputError);
  else
    session.apply(*settings);
}

// What is as it should be stays as it is.
void DriverCore::settleAll() noexcept {
  const auto hasSettings = [this](const auto& session) {
    return fSettings.find(session->address()) != nullptr;
  };
  const bool needsOutputs = std::any_of(fSessions.begin(), fSessions.end(), hasSettings);
  const int outputError = needsOutputs ? openOutputs() : 0;
  for (const auto& session : fSessions) settle(*session, outputError);
}

void DriverCore::typeWhatIsDue(Microseconds now) noexcept {
  if (isStoppedByKey())
    return stopTyping();
  Output& events = output();
  const auto answer = fTypist.expire(now, events);
  watchKeysNoLonger();
  // The step was not carried out when it could not be written, yet its packet may be answered already.
  if (!write(events) && answer) {
    auto failed = *answer;
    failed.outcome = static_cast<std::uint16_t>(TypingOutcome::kNoKeyboard);
    tell(failed);
  } else if (answer) {
    tell(*answer);
  }
}

void DriverCore::giveUpTyping(TypingOutcome outcome) noexcept {
  while (const auto answer = fTypist.giveUp(outcome)) tell(*answer);
  watchKeysNoLonger();
}

// The packets of one text follow each other without a gap, so that its keys count from its beginning on.
bool DriverCore::isStoppedByKey() noexcept {
  if (!fTypist.isStoppable())
    return false;
  if (!fWatchesKeys)
    fKeyPresses.begin();
  fWatchesKeys = true;
  return fKeyPresses.keyWentDown();
}

// Unless the next step is of a text as well.
void DriverCore::watchKeysNoLonger() noexcept {
  if (!fWatchesKeys || fTypist.isStoppable())
    return;
  fKeyPresses.end();
  fWatchesKeys = false;
}

void DriverCore::tellCondition(const TrackballSession& session) noexcept {
  auto packet = makePacket<DeviceStatePacket>();
  packet.device = session.address();
  packet.number = session.number();
  packet.condition = static_cast<std::uint16_t>(session.condition());
  packet.error = static_cast<std::uint16_t>(session.error());
  tell(packet);
}

void DriverCore::tellLamps() noexcept {
  auto packet = makePacket<LampsPacket>();
  packet.lit = fLitLamps;
  tell(packet);
}

template <class Packet>
void DriverCore::tell(const Packet& packet) noexcept {
  if (fHasHelper && fChannel != nullptr)
    fChannel->send(std::as_bytes(std::span(&packet, 1)));
}

}  // namespace veltrix
