#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/event_loop.h"
#include "platform/session_bus.h"

struct sd_bus_slot;

namespace veltrix::testing {

// A program on a bus that takes every call, remembers it and answers it. Served by the test's own loop.
class FakeService {
 public:
  // Takes the name, which the bus gives to it before the constructor returns.
  FakeService(sd_event* loop, const std::string& address, const char* name);
  ~FakeService();
  FakeService(const FakeService&) = delete;
  FakeService& operator=(const FakeService&) = delete;

  // Each as "/path interface.method(arguments)", with " starts" and " asks" for what its flags allow.
  const std::vector<std::string>& calls() const { return fCalls; }

  void answerNothing() { fIsSilent = true; }
  void refuse(const char* error, const char* text);
  // What a question for a property of org.mpris.MediaPlayer2.Player is answered with.
  void setText(const std::string& property, const std::string& value) { fTexts[property] = value; }
  void setBoolean(const std::string& property, bool value) { fBooleans[property] = value; }
  // The same, with the signal that says so.
  void changeText(const std::string& property, const std::string& value);

  // For the bus.
  int handle(sd_bus_message* call);

 private:
  int answerProperty(sd_bus_message* call);

  BusHandle fBus;
  std::vector<std::string> fCalls;
  std::map<std::string, std::string> fTexts;
  std::map<std::string, bool> fBooleans;
  bool fIsSilent = false;
  std::string fError;
  std::string fErrorText;
};

}  // namespace veltrix::testing
