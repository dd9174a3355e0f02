#include "platform/typed_events.h"

#include <algorithm>
#include <cstring>

namespace veltrix {

std::int32_t EventParameter::read(std::uint32_t keyword, std::uint32_t type, void* buffer,
                                  std::size_t capacity, std::size_t* actualSize) const {
  if (fType == 0 || fKeyword != keyword)
    return kEventParameterMissing;
  if (fType != type)
    return kEventCoercionFailed;
  const std::size_t copied = std::min(capacity, fData.size());
  if (copied > 0)
    std::memcpy(buffer, fData.data(), copied);
  if (actualSize != nullptr)
    *actualSize = fData.size();
  return 0;
}

EventAddress::EventAddress(std::string_view application) : fBusName("com.aldmoor.") {
  fBusName += application;
}

EventAddress::EventAddress(std::string_view application, const ProcessSerialNumber& process)
    : EventAddress(application) {
  // An element of a bus name must not begin with a digit.
  fBusName += ".p" + std::to_string(process.pid);
}

std::int32_t Event::putParameter(std::uint32_t keyword, std::uint32_t type, std::span<const std::byte> data) {
  if (data.size() > kMaximumEventBytes)
    return kEventParameterError;
  fParameter = EventParameter(keyword, type, data);
  return 0;
}

}  // namespace veltrix
