#include "driver/output_mixer.h"

#include <algorithm>

namespace veltrix {

int OutputMixer::write(std::span<const OutputEvent> groups) noexcept {
  const auto isKey = [](const OutputEvent& event) { return event.type == EV_KEY; };
  if (std::none_of(groups.begin(), groups.end(), isKey))  // movement, which is most there is
    return groups.empty() ? 0 : fSink.write(groups);
  std::size_t count = 0;
  bool groupBegan = false;
  for (const OutputEvent& event : groups) {
    const bool ends = event.type == EV_SYN;
    if (count == fMixed.size() || !(ends ? groupBegan : passes(event)))
      continue;
    groupBegan = !ends;
    fMixed[count++] = event;
  }
  return count > 0 ? fSink.write({fMixed.data(), count}) : 0;
}

bool OutputMixer::passes(const OutputEvent& event) noexcept {
  if (event.type != EV_KEY)
    return true;
  return event.value != 0 ? fHeld.press(event.code) : fHeld.release(event.code);
}

}  // namespace veltrix
