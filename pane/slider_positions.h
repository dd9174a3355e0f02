#pragma once

#include <cstdint>
#include <vector>

// Where the sliders may rest and what their positions stand for.
namespace veltrix {

inline constexpr int kSpeedStep = 5;
inline constexpr int kLargestSpeedPosition = 100;

// The range that the acceleration slider offers: factors 0 to 2.5. A larger stored factor widens it, up to
// the largest factor that a driver record carries (4.0).
inline constexpr int kLargestAccelerationPosition = 125;
inline constexpr int kWidestAccelerationPosition = 200;

inline constexpr int kSmallestScrollSpeed = 1;
inline constexpr int kLargestScrollSpeed = 20;

// The position of a factor: 50 a unit, truncated toward zero; saturates, not-a-number is 0.
std::int32_t accelerationToPosition(double acceleration);

// The factor of a position. It has single precision, although it is held and stored as a double.
double positionToAcceleration(std::int32_t position);

// The positions 0 to `largest`, both included, that come back unchanged when they are stored and shown again.
// Truncation takes a step off about half of all positions, so a slider that rested on one of those would
// creep toward 0 by itself.
std::vector<int> steadyAccelerationPositions(int largest);

// The positions of the speed slider: the multiples of kSpeedStep up to kLargestSpeedPosition.
std::vector<int> speedPositions();

// The element of `positions` (rising) nearest to `position`, the larger one of two equally near; `position`
// itself when there are none.
int nearestPosition(const std::vector<int>& positions, int position);

// The element of `positions` (rising) that lies `steps` after `position` (before it, when negative), held at
// the ends. From between two elements the first step reaches the next one in that direction. Without elements
// every number is a position.
int stepPosition(const std::vector<int>& positions, int position, int steps);

struct PositionRange {
  int smallest;
  int largest;
  friend bool operator==(const PositionRange&, const PositionRange&) = default;
};

// The range of the scroll slider while it shows `amount`: the usual one, widened so that an amount from
// elsewhere is shown as it is and comes back unchanged.
PositionRange scrollSpeedRange(std::int32_t amount);

// The distance of the tick marks of a slider of that range: 1, or more where that many marks could not be
// told apart and would take for ever to draw.
int tickDistance(PositionRange range);

// The largest position of the acceleration slider while it shows the stored position.
int largestAccelerationPosition(std::int32_t storedPosition);

}  // namespace veltrix
