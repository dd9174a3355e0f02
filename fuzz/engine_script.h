#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// What comes of a run of the engine.
struct EngineRun {
  std::string problem;       // the first rule that was broken, in words; empty when none was
  std::uint64_t transcript;  // of everything that the engine gave
};

// Plays what the bytes say to an engine: frames of any content, times in any order, any records, in between
// deadlines, lost events and unplugging. At the end everything is released.
EngineRun runEngineScript(std::string_view bytes);
