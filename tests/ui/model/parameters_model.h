#pragma once

#include <array>
#include <string>

#include "tests/ui/model/document.h"

namespace veltrix::model {

inline constexpr int kParameters = 5;

// The sheet with the scroll parameters: each a slider and a field that follow one another.
class ParametersModel {
 public:
  struct Range {
    int least;
    int most;
    int step;  // of an arrow key
  };

  ParametersModel();

  // Edits a copy; the ranges are those of the sliders.
  void open(const Json& parameters, const std::array<Range, kParameters>& ranges);
  void moveSlider(int row, int steps);                  // one step on (1) or back (-1)
  void typeDigits(int row, const std::string& digits);  // over what the field holds

  const Json& parameters() const { return fParameters; }
  int value(int row) const;     // as the field shows it
  int position(int row) const;  // of the slider

 private:
  Json fParameters;
  std::array<Range, kParameters> fRanges{};
};

}  // namespace veltrix::model
