#include "tests/ui/model/parameters_model.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace veltrix::model {
namespace {

constexpr std::array<const char*, kParameters> kNames = {"triggerTime", "timeDecay", "timeStop", "countDecay",
                                                         "countStop"};

const char* nameOf(int row) {
  return kNames.at(static_cast<std::size_t>(row));
}

}  // namespace

ParametersModel::ParametersModel() = default;

void ParametersModel::open(const Json& parameters, const std::array<Range, kParameters>& ranges) {
  fParameters = parameters;
  fRanges = ranges;
}

int ParametersModel::value(int row) const {
  return intOf(fParameters, nameOf(row));
}

int ParametersModel::position(int row) const {
  const Range& range = fRanges.at(static_cast<std::size_t>(row));
  return std::clamp(value(row), range.least, range.most);
}

// All values come from the sliders then. At its end a slider does not move, and nothing is taken.
void ParametersModel::moveSlider(int row, int steps) {
  const Range& range = fRanges.at(static_cast<std::size_t>(row));
  const int moved = std::clamp(position(row) + steps * range.step, range.least, range.most);
  if (moved == position(row)) {
    return;
  }
  for (int each = 0; each < kParameters; ++each) {
    fParameters[nameOf(each)] = each == row ? moved : position(each);
  }
}

// And here from the fields; what is typed is read after every character.
void ParametersModel::typeDigits(int row, const std::string& digits) {
  std::int64_t number = 0;
  for (const char digit : digits) {
    number = std::min<std::int64_t>(number * 10 + (digit - '0'), std::numeric_limits<std::int32_t>::max());
  }
  for (int each = 0; each < kParameters; ++each) {
    fParameters[nameOf(each)] = each == row ? static_cast<std::int32_t>(number) : value(each);
  }
}

}  // namespace veltrix::model
