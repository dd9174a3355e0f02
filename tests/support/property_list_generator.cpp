#include "tests/support/property_list_generator.h"

#include <bit>
#include <cmath>
#include <limits>

#include "platform/text_encoding.h"

namespace veltrix::testing {

using plist::Array;
using plist::Data;
using plist::Date;
using plist::Dictionary;
using plist::Value;

Value PropertyListGenerator::document() {
  return container(fLimits.depth);
}

Value PropertyListGenerator::value(std::size_t depth) {
  return depth > 0 && below(3) == 0 ? container(depth) : scalar();
}

Value PropertyListGenerator::container(std::size_t depth) {
  const std::uint64_t count = below(fLimits.children + 1);
  if (below(3) == 0) {
    Array array = Array::create();
    for (std::uint64_t i = 0; i < count; ++i) {
      array.append(value(depth - 1));
    }
    return array;
  }
  Dictionary dictionary = Dictionary::create();
  for (std::uint64_t i = 0; i < count; ++i) {
    dictionary.set(text(), value(depth - 1));
  }
  return dictionary;
}

Value PropertyListGenerator::scalar() {
  switch (below(6)) {
    case 0:
      return below(2) == 0;
    case 1:
      return integer();
    case 2:
      return real();
    case 3:
      return text();
    case 4: {
      Data data(below(80));
      for (std::byte& byte : data) {
        byte = static_cast<std::byte>(below(256));
      }
      return data;
    }
    default: {
      // Whole seconds from the start of the year 1 or 1000 to the end of 9999.
      constexpr std::uint64_t kSeconds = 315537897600;
      constexpr std::uint64_t kEarlySeconds = 31525372800;
      constexpr double kFirst = -63113904000;
      const std::uint64_t skipped = fLimits.earlyDates ? 0 : kEarlySeconds;
      return Date{kFirst + static_cast<double>(skipped + below(kSeconds - skipped))};
    }
  }
}

// All magnitudes alike, and the borders of the sizes in which integers are stored.
std::int64_t PropertyListGenerator::integer() {
  const std::uint64_t bits = fRandom() >> below(64);
  const std::uint64_t border = std::uint64_t{1} << below(64);
  switch (below(4)) {
    case 0:
      return static_cast<std::int64_t>(border - 1);
    case 1:
      return static_cast<std::int64_t>(border);
    case 2:
      return static_cast<std::int64_t>(0 - bits);
    default:
      return static_cast<std::int64_t>(bits);
  }
}

double PropertyListGenerator::real() {
  constexpr double kOdd[] = {std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity()};
  if (below(8) == 0) {
    return kOdd[below(3)];
  }
  if (below(2) == 0) {
    return (static_cast<double>(below(4096)) - 2048) / 64;
  }
  const auto any = std::bit_cast<double>(fRandom());
  return std::isfinite(any) ? any : -0.0;
}

std::string PropertyListGenerator::text() {
  constexpr char32_t kEdges[] = {'\t',   '\n',    ' ',      '&',   '<',   '>',    '"',
                                 '\'',   0x7F,    0x80,     0x7FF, 0x800, 0xD7FF, 0xE000,
                                 0xFFFD, 0x10000, 0x10FFFF, '\\',  ';',   '%',    '\r'};
  constexpr std::size_t kEdgeCount = std::size(kEdges);
  const std::uint64_t length = below(8) == 0 ? below(40) : below(7);
  const bool plain = below(2) == 0;
  std::string out;
  for (std::uint64_t i = 0; i < length; ++i) {
    const std::uint64_t kind = plain ? 0 : below(3);
    if (kind == 0) {
      out.push_back(static_cast<char>('a' + below(26)));
    } else if (kind == 1) {
      appendUtf8(out, kEdges[below(fLimits.carriageReturns ? kEdgeCount : kEdgeCount - 1)]);
    } else {
      appendUtf8(out, static_cast<char32_t>(0xA0 + below(0xD000)));
    }
  }
  return out;
}

}  // namespace veltrix::testing
