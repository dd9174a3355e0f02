// What names and tables of keys cost, and keys for texts, on a layout with dead keys.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <string>
#include <utility>

#include "helper/typing/keyboard_model.h"
#include "keyboard/key_names.h"
#include "keyboard/key_tables.h"
#include "keyboard/layout_access.h"

namespace {

constexpr const char* kLayout = "de";

// Keeps one layout in effect; false when the system does not have it.
bool holdLayout() {
  auto layout = veltrix::KeyboardLayout::named(kLayout);
  if (!layout) {
    return false;
  }
  veltrix::setKeyboardLayoutSource(
      [kept = std::make_shared<const veltrix::KeyboardLayout>(std::move(layout.value()))] { return kept; });
  return true;
}

void BM_KeyTables(benchmark::State& state) {
  std::array<std::uint8_t, kCharacters> keys{};
  std::array<std::uint8_t, kCharacters> modifiers{};
  if (!holdLayout() || UpdateKeyTables(keys.data(), modifiers.data()) == 0) {
    state.SkipWithError("no layout");
  }
  while (state.KeepRunning()) {
    UpdateKeyTables(keys.data(), modifiers.data());
    benchmark::DoNotOptimize(keys);
  }
}
BENCHMARK(BM_KeyTables)->Unit(benchmark::kMicrosecond);

void BM_KeyNames(benchmark::State& state) {
  if (!holdLayout() || GetKeyboardInformation(nullptr, nullptr) < 0) {
    state.SkipWithError("no layout");
  }
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(GetKeyboardInformation(nullptr, nullptr));
  }
}
BENCHMARK(BM_KeyNames)->Unit(benchmark::kMicrosecond);

void BM_ReadLayout(benchmark::State& state) {
  while (state.KeepRunning()) {
    if (!veltrix::KeyboardLayout::named(kLayout)) {
      state.SkipWithError("no layout");
      break;
    }
  }
}
BENCHMARK(BM_ReadLayout)->Unit(benchmark::kMillisecond);

// With the keymap at hand, as it is when a layout changes.
veltrix::Result<veltrix::KeyboardModel> makeModel(xkb_context* context, xkb_keymap* keymap) {
  return veltrix::KeyboardModel::of(veltrix::xkb::Context(xkb_context_ref(context)),
                                    {veltrix::xkb::Keymap(xkb_keymap_ref(keymap)), 0}, "en_US.UTF-8");
}

struct German {
  veltrix::xkb::Context context = veltrix::xkb::makeContext();
  veltrix::xkb::Keymap keymap =
      veltrix::xkb::keymapOfNames(context.get(),
                                  {.model = "", .layout = kLayout, .variant = "", .options = ""})
          .keymap;
};

void BM_MakeKeyboardModel(benchmark::State& state) {
  const German german;
  while (state.KeepRunning()) {
    if (!makeModel(german.context.get(), german.keymap.get())) {
      state.SkipWithError("no layout");
      break;
    }
  }
}
BENCHMARK(BM_MakeKeyboardModel)->Unit(benchmark::kMicrosecond);

// The first text after a change of the layout, for which the table of dead keys is read.
void BM_FirstCharacter(benchmark::State& state) {
  const German german;
  while (state.KeepRunning()) {
    const auto model = makeModel(german.context.get(), german.keymap.get());
    if (!model || model.value().keysForCharacter(U'a').empty()) {
      state.SkipWithError("no layout");
      break;
    }
  }
}
BENCHMARK(BM_FirstCharacter)->Unit(benchmark::kMillisecond);

void BM_KeysOfAShortcut(benchmark::State& state) {
  const German german;
  const auto model = makeModel(german.context.get(), german.keymap.get());
  if (!model) {
    state.SkipWithError("no layout");
    return;
  }
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(model.value().keysFor({veltrix::kHoldControl, XKB_KEY_c}));
  }
}
BENCHMARK(BM_KeysOfAShortcut)->Unit(benchmark::kMicrosecond);

void BM_PlanThousandCharacters(benchmark::State& state) {
  const German german;
  const auto model = makeModel(german.context.get(), german.keymap.get());
  std::string text;
  while (text.size() < 1000) {
    text += "The quick brown fox: 4 @ [10] -> jumps!\n";
  }
  text.resize(1000);
  if (!model || !veltrix::planTyping(model.value(), text, veltrix::UnicodeInput::kNone).missing.empty()) {
    state.SkipWithError("no layout");
    return;
  }
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(veltrix::planTyping(model.value(), text, veltrix::UnicodeInput::kNone));
  }
}
BENCHMARK(BM_PlanThousandCharacters)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
