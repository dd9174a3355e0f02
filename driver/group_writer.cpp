#include "driver/group_writer.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace veltrix {

namespace {

bool isEndOfGroup(const OutputEvent& event) noexcept {
  return event.type == EV_SYN;
}

// Keys of keyboards come before the first button.
bool isForKeyboard(const OutputEvent& event) noexcept {
  return event.type == EV_KEY && event.code < BTN_MISC;
}

}  // namespace

int GroupWriter::write(std::span<const OutputEvent> groups) noexcept {
  fError = 0;
  while (!groups.empty()) {
    const auto end = std::find_if(groups.begin(), groups.end(), isEndOfGroup);
    const auto size = static_cast<std::size_t>(end - groups.begin());
    addPart(groups.first(size), fKeyboard);
    addPart(groups.first(size), fPointer);
    groups = groups.subspan(std::min(size + 1, groups.size()));
  }
  flush();
  return fError;
}

void GroupWriter::addPart(std::span<const OutputEvent> group, int device) noexcept {
  bool any = false;
  for (const OutputEvent& event : group) {
    if (isForKeyboard(event) != (device == fKeyboard))
      continue;
    if (!any && device != fDevice) {
      flush();
      fDevice = device;
    }
    any = true;
    add(event);
  }
  if (any)
    add({EV_SYN, SYN_REPORT, 0});
}

void GroupWriter::add(const OutputEvent& event) noexcept {
  if (fCount == fPending.size())
    flush();
  input_event& next = fPending[fCount++];
  next.type = event.type;
  next.code = event.code;
  next.value = event.value;
}

// The kernel takes the events of a write one by one and may stop in between.
void GroupWriter::flush() noexcept {
  std::span<const std::byte> rest = std::as_bytes(std::span(fPending.data(), fCount));
  fCount = 0;
  while (!rest.empty() && fError == 0) {
    const ssize_t written = ::write(fDevice, rest.data(), rest.size());
    if (written > 0)
      rest = rest.subspan(static_cast<std::size_t>(written));
    else if (written == 0 || errno != EINTR)
      fError = written == 0 ? EIO : errno;
  }
}

}  // namespace veltrix
