#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/process_table.h"

// Typed events: small messages from one application to another, told apart by a class and an id
// (four-character codes) and carrying at most one typed parameter each way.
namespace veltrix {

// Statuses of the functions below; 0 is success.
inline constexpr std::int32_t kEventParameterError = -50;      // more than kMaximumEventBytes
inline constexpr std::int32_t kEventNoSuchProcess = -600;      // nobody answers to the address
inline constexpr std::int32_t kEventConnectionInvalid = -609;  // no bus, or the peer died before it answered
inline constexpr std::int32_t kEventCoercionFailed = -1700;    // the parameter is of another type
inline constexpr std::int32_t kEventParameterMissing = -1701;  // there is no such parameter
inline constexpr std::int32_t kEventNotHandled = -1708;        // refused by the peer or by the bus
inline constexpr std::int32_t kEventTimedOut = -1712;          // no answer in time

inline constexpr std::size_t kMaximumEventBytes = 65536;  // of one parameter

inline constexpr std::uint32_t kDirectParameter = 0x2D2D2D2D;  // the keyword "----"

// The parameter of an event or of a reply: its keyword, its type and its bytes. Type 0 stands for none.
class EventParameter {
 public:
  EventParameter() = default;
  EventParameter(std::uint32_t keyword, std::uint32_t type, std::span<const std::byte> data)
      : fKeyword(keyword), fType(type), fData(data.begin(), data.end()) {}

  std::uint32_t keyword() const { return fKeyword; }
  std::uint32_t type() const { return fType; }
  const std::vector<std::byte>& data() const { return fData; }

  // Copies at most `capacity` bytes into `buffer`; `actualSize` (may be null) receives the size of the whole
  // parameter. kEventParameterMissing or kEventCoercionFailed leave both untouched.
  std::int32_t read(std::uint32_t keyword, std::uint32_t type, void* buffer, std::size_t capacity,
                    std::size_t* actualSize) const;

 private:
  std::uint32_t fKeyword = 0;
  std::uint32_t fType = 0;
  std::vector<std::byte> fData;
};

// Where an event goes: one process of an application, named by its serial number, or whichever process stands
// for the application. Names take the letters, digits and underscores that bus names allow.
class EventAddress {
 public:
  explicit EventAddress(std::string_view application);
  EventAddress(std::string_view application, const ProcessSerialNumber& process);

  const std::string& busName() const { return fBusName; }

 private:
  std::string fBusName;
};

class Event {
 public:
  Event(EventAddress target, std::uint32_t eventClass, std::uint32_t eventId)
      : fTarget(std::move(target)), fClass(eventClass), fId(eventId) {}

  // Sets the one parameter; kEventParameterError, with nothing changed, when it is too large.
  std::int32_t putParameter(std::uint32_t keyword, std::uint32_t type, std::span<const std::byte> data);

  const EventAddress& target() const { return fTarget; }
  std::uint32_t eventClass() const { return fClass; }
  std::uint32_t eventId() const { return fId; }
  const EventParameter& parameter() const { return fParameter; }

 private:
  EventAddress fTarget;
  std::uint32_t fClass;
  std::uint32_t fId;
  EventParameter fParameter;
};

class EventReply {
 public:
  EventReply() = default;
  explicit EventReply(EventParameter parameter) : fParameter(std::move(parameter)) {}
  const EventParameter& parameter() const { return fParameter; }

 private:
  EventParameter fParameter;
};

// Carries events to other processes. Not thread-safe.
class EventTransport {
 public:
  virtual ~EventTransport() = default;

  // Sends and waits for the answer, in all at most `timeout`. `reply` is written only on success.
  virtual std::int32_t sendWaitingForReply(const Event& event, std::chrono::milliseconds timeout,
                                           EventReply* reply) = 0;

  // Hands the event over without waiting for the peer; an address that nobody answers to goes unnoticed.
  virtual std::int32_t sendWithoutReply(const Event& event) = 0;
};

}  // namespace veltrix
