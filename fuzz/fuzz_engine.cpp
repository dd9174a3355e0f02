#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/engine_script.h"

// Frames, times and records as broken devices, clocks and helpers could send them: whatever comes, no rule of
// the devices behind the engine is broken, and in the end nothing is down.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const EngineRun run = runEngineScript({reinterpret_cast<const char*>(data), size});
  if (!run.problem.empty()) {
    std::fprintf(stderr, "%s\n", run.problem.c_str());
    std::abort();
  }
  return 0;
}
