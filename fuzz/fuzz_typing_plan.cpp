#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "driverlink/packets.h"
#include "helper/typing/keyboard_model.h"
#include "platform/text_encoding.h"

namespace {

constexpr std::uint16_t kLastKey = 247;

const veltrix::KeyboardModel& keyboard(const char* layout, std::uint16_t lamps) {
  auto context = veltrix::xkb::makeContext();
  auto found = veltrix::xkb::keymapOfNames(context.get(), {"", layout, "", ""});
  auto model = veltrix::KeyboardModel::of(std::move(context), std::move(found), "en_US.UTF-8");
  if (!model) {
    std::abort();
  }
  model.value().setLamps(lamps);
  return *new veltrix::KeyboardModel(std::move(model.value()));  // to the end of the process
}

bool isKey(std::uint16_t code) {
  return code >= 1 && code <= kLastKey;
}

// A press is of keys that there are, each once.
void check(const veltrix::KeyPress& press) {
  std::vector<std::uint16_t> keys{press.code};
  const auto end = std::find(press.modifiers.begin(), press.modifiers.end(), 0);
  keys.insert(keys.end(), press.modifiers.begin(), end);
  const bool tail = std::any_of(end, press.modifiers.end(), [](std::uint16_t code) { return code != 0; });
  std::sort(keys.begin(), keys.end());
  if (tail || !std::all_of(keys.begin(), keys.end(), isKey) ||
      std::adjacent_find(keys.begin(), keys.end()) != keys.end()) {
    std::abort();
  }
}

void check(const veltrix::TypingPlan& plan, std::string_view text) {
  for (const auto& press : plan.presses) {
    check(press);
  }
  auto missing = plan.missing;
  std::sort(missing.begin(), missing.end());
  const bool twice = std::adjacent_find(missing.begin(), missing.end()) != missing.end();
  const bool told = std::binary_search(missing.begin(), missing.end(), char32_t{0xFFFD});
  if (twice || (veltrix::firstBadUtf8(text) && !told)) {
    std::abort();
  }
}

}  // namespace

// Any bytes as the text of a snippet, on a layout with dead keys, with Caps Lock and without, and on one of
// another script.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto& french = keyboard("fr", 0);
  static const auto& lockedFrench = keyboard("fr", veltrix::kCapsLockLamp | veltrix::kNumLockLamp);
  static const auto& russian = keyboard("ru", 0);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const auto* model : {&french, &lockedFrench, &russian}) {
    for (const auto unicode : {veltrix::UnicodeInput::kNone, veltrix::UnicodeInput::kControlShiftU}) {
      check(veltrix::planTyping(*model, text, unicode), text);
    }
  }
  return 0;
}
