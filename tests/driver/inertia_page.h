#pragma once

#include <string>

// What docs/inertia.md shows, as the engine does it with the factory parameters.
namespace veltrix {

// The rows of the table of steps, after detents that were 40 ms apart.
std::string inertiaTable();

// The plot, as SVG.
std::string inertiaPlot();

}  // namespace veltrix
