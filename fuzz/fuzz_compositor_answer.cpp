#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "helper/desktop/compositor_inputs.h"
#include "helper/desktop/compositor_wire.h"

// Whatever a compositor answers, no more is taken in than the bound, and a reason is one short line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto length = veltrix::compositorAnswerLength(text.substr(0, veltrix::kCompositorHeader));
  if (length && length.value() > veltrix::kLongestCompositorAnswer) {
    std::abort();
  }
  const auto outcome = veltrix::compositorOutcome(text);
  if (!outcome &&
      (outcome.error().message.size() > 210 || outcome.error().message.find('\n') != std::string::npos)) {
    std::abort();
  }
  const auto keyboards = veltrix::compositorKeyboards(text);
  if (keyboards && keyboards.value().size() > size) {
    std::abort();
  }
  static_cast<void>(veltrix::compositorInputChange(text));
  static_cast<void>(veltrix::compositorSubscribed(text));
  return 0;
}
