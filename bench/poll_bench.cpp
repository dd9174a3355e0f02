// One poll of the connected trackballs: the walk over the processes, the request and the helper's answer. A
// helper must be running on the session bus.
#include <benchmark/benchmark.h>

#include "helperlink/helper_messaging.h"

namespace {

void BM_Poll(benchmark::State& state) {
  VeltrixDeviceList list{};
  while (state.KeepRunning()) {
    if (VeltrixGetConnectedDevices(&list) != 0) {
      state.SkipWithError("no helper answers");
      break;
    }
  }
  state.counters["devices"] = list.count;
}
BENCHMARK(BM_Poll)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
