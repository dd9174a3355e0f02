#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "driver/engine/engine.h"

// An engine whose every call is looked at by somebody who knows the devices behind it: what may be written to
// them, and what is down on them.
class EngineWatcher {
 public:
  void apply(const veltrix::DriverRecord& record, const veltrix::ScrollParameters& parameters,
             veltrix::Microseconds now);
  void process(const veltrix::InputFrame& frame, std::uint8_t heldModifiers);
  void modifiersChanged(std::uint8_t heldModifiers);
  void expire(veltrix::Microseconds now);
  void resynchronize(std::uint16_t buttonsDown, veltrix::Microseconds now, std::uint8_t heldModifiers);
  void release(veltrix::Microseconds now);  // nothing may be down after it

  veltrix::Microseconds deadline() const { return fEngine.deadline(); }

  // To be called when every button is up and no lock is on.
  void requireNothingDown();

  // The first rule that was broken, in words; empty while none is.
  const std::string& problem() const { return fProblem; }

  // Differs, but for rare chances, between engines that gave anything else.
  std::uint64_t transcript() const { return fTranscript; }

 private:
  void begin() { fOutput.clear(); }
  void look();
  void lookAt(const veltrix::OutputEvent& event);
  void lookAt(const veltrix::ButtonNotice& notice);
  void lookAtKey(const veltrix::OutputEvent& event);
  void require(bool condition, const char* rule);
  void note(std::uint64_t value) { fTranscript = (fTranscript ^ value) * 0x100000001B3U; }

  veltrix::Engine fEngine{veltrix::DeviceModel{}};
  veltrix::Output fOutput;
  std::array<bool, KEY_CNT> fIsDown{};
  std::array<int, veltrix::kRecordActions> fNoticed{};  // the command + 1 that began, 0 when none has
  bool fGroupHasKeyboard = false;
  bool fGroupHasPointer = false;
  std::uint64_t fTranscript = 0xCBF29CE484222325U;
  std::string fProblem;
};
