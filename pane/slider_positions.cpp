#include "pane/slider_positions.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>

namespace veltrix {
namespace {

constexpr double kPositionsPerUnit = 50.0;
constexpr std::int64_t kMostTicks = 50;

}  // namespace

std::int32_t accelerationToPosition(double acceleration) {
  if (std::isnan(acceleration)) {
    return 0;
  }
  constexpr double kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr double kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(std::trunc(acceleration * kPositionsPerUnit), kLeast, kMost));
}

double positionToAcceleration(std::int32_t position) {
  return static_cast<double>(static_cast<float>(position / kPositionsPerUnit));
}

std::vector<int> steadyAccelerationPositions(int largest) {
  std::vector<int> steady;
  for (int position = 0; position <= largest; ++position) {
    if (accelerationToPosition(positionToAcceleration(position)) == position) {
      steady.push_back(position);
    }
  }
  return steady;
}

std::vector<int> speedPositions() {
  std::vector<int> positions;
  for (int position = 0; position <= kLargestSpeedPosition; position += kSpeedStep) {
    positions.push_back(position);
  }
  return positions;
}

int nearestPosition(const std::vector<int>& positions, int position) {
  if (positions.empty()) {
    return position;
  }
  const auto above = std::lower_bound(positions.begin(), positions.end(), position);
  if (above == positions.begin()) {
    return *above;
  }
  const int below = *std::prev(above);
  if (above == positions.end()) {
    return below;
  }
  return *above - position <= position - below ? *above : below;
}

int stepPosition(const std::vector<int>& positions, int position, int steps) {
  if (positions.empty() || steps == 0) {
    return static_cast<int>(std::clamp<std::int64_t>(
        std::int64_t{position} + steps, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
  }
  const auto start = steps > 0 ? std::upper_bound(positions.begin(), positions.end(), position) - 1
                               : std::lower_bound(positions.begin(), positions.end(), position);
  const std::ptrdiff_t index = std::clamp<std::ptrdiff_t>(start - positions.begin() + steps, 0,
                                                          static_cast<std::ptrdiff_t>(positions.size()) - 1);
  return positions[static_cast<std::size_t>(index)];
}

PositionRange scrollSpeedRange(std::int32_t amount) {
  return {std::min(kSmallestScrollSpeed, amount), std::max(kLargestScrollSpeed, amount)};
}

int tickDistance(PositionRange range) {
  const std::int64_t length = std::int64_t{range.largest} - range.smallest;
  return static_cast<int>((length + kMostTicks - 1) / kMostTicks);
}

int largestAccelerationPosition(std::int32_t storedPosition) {
  return std::clamp(storedPosition, kLargestAccelerationPosition, kWidestAccelerationPosition);
}

}  // namespace veltrix
