#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "driver/event_sink.h"
#include "driver/helper_channel.h"
#include "driver/key_press_source.h"
#include "driver/key_typist.h"
#include "driver/lamp_listener.h"
#include "driver/modifier_source.h"
#include "driver/output_mixer.h"
#include "driver/poll_loop.h"
#include "driver/settings_table.h"
#include "driver/trackball_session.h"

namespace veltrix {

// What the driver decides: which trackballs it takes, by what they work, and what the helper hears. Does no
// input or output of its own and allocates for a new trackball only.
class DriverCore final : public HelperRequests,
                         public ModifierListener,
                         public LampListener,
                         private SessionHost {
 public:
  // All must outlive the core; of the loop only the time is used.
  DriverCore(const PollLoop& loop, EventSink& sink, ModifierSource& modifiers,
             KeyPressSource& keyPresses) noexcept;

  // To whom it speaks; null for nobody.
  void setChannel(HelperChannel* channel) noexcept { fChannel = channel; }

  // Takes a trackball into care and returns its number, which is not used again.
  std::uint32_t attach(std::unique_ptr<Trackball> trackball);
  // Not to be called from within a call of the trackball's.
  void detach(std::uint32_t number) noexcept;

  // When expire() is to be called next; kNever when nothing waits.
  Microseconds deadline() const noexcept;
  void expire(Microseconds now) noexcept;

  void helperArrived() noexcept override;
  void apply(const ApplyPacket& packet) noexcept override;
  void withdraw(const WithdrawPacket& packet) noexcept override;
  bool typeKeys(const TypeKeysPacket& packet) noexcept override;
  void stopTyping() noexcept override;
  void movePointer(const MovePointerPacket& packet) noexcept override;
  void monitor(bool wanted) noexcept override { fMonitored = wanted; }
  void helperGone() noexcept override;
  bool hasOutputs() const noexcept override { return fSink.isOpen(); }

  void modifiersChanged(std::uint8_t held) noexcept override;
  void lampsChanged(std::uint16_t lit) noexcept override;

 private:
  Microseconds now() const noexcept override { return fLoop.now(); }
  std::uint8_t heldModifiers() const noexcept override { return fHeldModifiers; }
  Output& output() noexcept override;
  void carryOut(const TrackballSession& session, const Output& output) noexcept override;
  void conditionChanged(const TrackballSession& session) noexcept override;

  int openOutputs() noexcept;
  void outputsFailed(int error) noexcept;
  bool write(const Output& output) noexcept;
  void settle(TrackballSession& session, int outputError) noexcept;
  void settleAll() noexcept;
  void typeWhatIsDue(Microseconds now) noexcept;
  void giveUpTyping(TypingOutcome outcome) noexcept;
  bool isStoppedByKey() noexcept;
  void watchKeysNoLonger() noexcept;
  void tellCondition(const TrackballSession& session) noexcept;
  void tellLamps() noexcept;
  template <class Packet>
  void tell(const Packet& packet) noexcept;

  const PollLoop& fLoop;
  EventSink& fSink;
  ModifierSource& fModifiers;
  KeyPressSource& fKeyPresses;
  HelperChannel* fChannel = nullptr;
  bool fHasHelper = false;
  bool fMonitored = false;
  bool fWatchesKeys = false;
  std::uint8_t fHeldModifiers = 0;
  std::uint16_t fLitLamps = 0;
  std::uint32_t fLastNumber = 0;
  std::vector<std::unique_ptr<TrackballSession>> fSessions;
  SettingsTable fSettings;
  KeyTypist fTypist;
  OutputMixer fMixer;
  Output fOutput;
};

}  // namespace veltrix
