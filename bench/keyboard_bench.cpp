// What names and tables of keys cost, on a layout with dead keys.
#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <utility>

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

}  // namespace

BENCHMARK_MAIN();
