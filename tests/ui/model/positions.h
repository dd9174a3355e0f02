#pragma once

#include <cstdint>
#include <vector>

// Where the model's sliders stand and what a key does to them.
namespace veltrix::model {

enum class SliderKey { kLeft, kRight, kPageUp, kPageDown, kHome, kEnd };

struct Slider {
  int position = 0;
  int least = 0;
  int most = 0;
  std::vector<int> stops;  // where it may rest, rising; empty for everywhere
  int page = 1;            // of the page keys
  bool mirrored = false;   // the keys that lead on lead to smaller positions

  // The nearest stop, the larger one of two.
  void show(int wanted);
  // True when that moved it.
  bool press(SliderKey key);
  // The stop after that position, or before it; the position itself at the ends.
  int nextStop(int from, bool on) const;
};

int speedOfPosition(int position);  // dots per inch
int positionOfSpeed(int dotsPerInch);

double accelerationOfPosition(int position);
int positionOfAcceleration(double acceleration);
// The stops of the acceleration slider while it shows that stored value.
std::vector<int> accelerationStops(double acceleration);
std::vector<int> speedStops();

}  // namespace veltrix::model
