#include "tests/ui/model/positions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace veltrix::model {
namespace {

constexpr auto kSpeeds = std::to_array({5000, 4000, 3000, 2000, 1000, 900, 800, 700, 600, 500, 400,
                                        360,  330,  300,  260,  230,  200, 160, 130, 100, 80});
constexpr int kMiddle = 50;         // where a speed stands that is none
constexpr int kUsualMost = 125;     // an acceleration of 2.5
constexpr int kGreatestMost = 200;  // and of 4, when a file asks for more

}  // namespace

void Slider::show(int wanted) {
  if (stops.empty()) {
    position = std::clamp(wanted, least, most);
    return;
  }
  position = stops.front();
  for (const int stop : stops) {
    if (std::abs(std::int64_t{stop} - wanted) <= std::abs(std::int64_t{position} - wanted)) {
      position = stop;
    }
  }
}

int Slider::nextStop(int from, bool on) const {
  int next = from;
  for (const int stop : stops) {
    if (on ? stop > from && next == from : stop < from) {
      next = stop;
    }
  }
  return next;
}

bool Slider::press(SliderKey key) {
  const int before = position;
  if (key == SliderKey::kHome || key == SliderKey::kEnd) {
    show((key == SliderKey::kHome) == mirrored ? most : least);
    return position != before;
  }
  const bool on = (key == SliderKey::kRight || key == SliderKey::kPageUp) != mirrored;
  const bool far = key == SliderKey::kPageUp || key == SliderKey::kPageDown;
  show(before + (on ? 1 : -1) * (far ? page : 1));
  if (!stops.empty()) {
    // A page goes to the next stop at least, an arrow key not further.
    const int next = nextStop(before, on);
    position = !far || (on ? position < next : position > next) ? next : position;
  }
  return position != before;
}

int speedOfPosition(int position) {
  return kSpeeds.at(static_cast<std::size_t>(position / 5));
}

int positionOfSpeed(int dotsPerInch) {
  for (std::size_t k = 0; k < kSpeeds.size() && dotsPerInch > 0; ++k) {
    if (kSpeeds.at(k) <= dotsPerInch) {
      return static_cast<int>(5 * k);
    }
  }
  return kMiddle;
}

double accelerationOfPosition(int position) {
  return static_cast<float>(position / 50.0);
}

int positionOfAcceleration(double acceleration) {
  const double position = std::trunc(acceleration * 50);
  return std::isnan(position) ? 0 : static_cast<int>(std::clamp(position, -2e9, 2e9));
}

std::vector<int> accelerationStops(double acceleration) {
  const int most = std::clamp(positionOfAcceleration(acceleration), kUsualMost, kGreatestMost);
  std::vector<int> stops;
  for (int position = 0; position <= most; ++position) {
    if (positionOfAcceleration(accelerationOfPosition(position)) == position) {
      stops.push_back(position);
    }
  }
  return stops;
}

std::vector<int> speedStops() {
  std::vector<int> stops;
  for (std::size_t k = 0; k < kSpeeds.size(); ++k) {
    stops.push_back(static_cast<int>(5 * k));
  }
  return stops;
}

}  // namespace veltrix::model
