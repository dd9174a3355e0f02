#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include "platform/property_list.h"

namespace veltrix::testing {

// What the documents may hold. Everything here survives XML and the binary form; the switches leave out what
// another program that takes part in a test does not.
struct GeneratorLimits {
  std::size_t depth = 5;
  std::size_t children = 6;
  bool carriageReturns = true;
  bool earlyDates = true;  // years 0001 to 0999
};

// Random property lists; the same seed gives the same documents.
class PropertyListGenerator {
 public:
  explicit PropertyListGenerator(std::uint64_t seed, const GeneratorLimits& limits = {})
      : fRandom(seed), fLimits(limits) {}

  plist::Value document();  // a dictionary or an array
  plist::Value value(std::size_t depth);
  std::string text();

 private:
  std::uint64_t below(std::uint64_t end) { return fRandom() % end; }
  std::int64_t integer();
  double real();
  plist::Value container(std::size_t depth);
  plist::Value scalar();

  std::mt19937_64 fRandom;
  GeneratorLimits fLimits;
};

}  // namespace veltrix::testing
