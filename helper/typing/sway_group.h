#pragma once

#include <string>
#include <vector>

#include "helper/desktop/compositor_inputs.h"
#include "helper/desktop/compositor_wire.h"
#include "helper/reconnect_delay.h"
#include "helper/typing/group_source.h"
#include "util/file_descriptor.h"

namespace veltrix {

// The device by which the driver types.
inline constexpr const char* kTypingKeyboard = "Veltrix Keyboard";

// The group of sway's keyboards, each of which may have one of its own: that of the driver's keyboard, since
// it is what types; without it that of the keyboard whose group changed last, else of the first one. A
// compositor that is not there, or goes away, is tried again when somebody wants the group.
class SwayGroup final : public GroupSource {
 public:
  // Connects at once. The loop must outlive the object.
  SwayGroup(sd_event* loop, std::string socketPath);

  std::optional<std::uint32_t> group() override;

  // For the loop.
  void serve();

 private:
  void connect();
  void disconnect();
  bool ask(CompositorKind kind, std::string_view body);
  bool readSome();
  bool takeMessages();
  bool take(CompositorKind kind, std::string_view body);
  bool takeChange(const CompositorInputChange& change);
  CompositorKeyboard* find(const std::string& identifier);
  std::uint64_t now() const;

  sd_event* fLoop;
  std::string fPath;
  FileDescriptor fSocket;
  EventSourceHandle fReady;
  std::string fReceived;
  std::vector<CompositorKeyboard> fKeyboards;
  std::string fChangedLast;  // an identifier; empty for none
  ReconnectDelay fDelay;
  std::uint64_t fNextAttempt = 0;  // of the loop's monotonic clock, in microseconds
};

}  // namespace veltrix
