#include "util/byte_strings.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace veltrix {

namespace {

constexpr std::size_t kLongestPascalString = 255;  // what the length byte can say

std::size_t limitOf(std::int16_t max) {
  return max > 0 ? static_cast<std::size_t>(max) : 0;
}

std::size_t pascalLimitOf(std::int16_t max) {
  return std::min(limitOf(max), kLongestPascalString);
}

int folded(unsigned char character) {
  return character >= 'A' && character <= 'Z' ? character + ('a' - 'A') : character;
}

// How many of `length` characters can be appended to a string of `used` characters; none when it is over the
// limit already.
std::size_t roomFor(std::size_t length, std::size_t used, std::size_t limit) {
  return used < limit ? std::min(length, limit - used) : 0;
}

std::int16_t appendToPascal(const void* source, std::size_t length, unsigned char* destination,
                            std::size_t limit) {
  const std::size_t used = destination[0];
  const std::size_t added = roomFor(length, used, limit);
  std::memmove(destination + 1 + used, source, added);
  destination[0] = static_cast<unsigned char>(used + added);
  return destination[0];
}

std::int16_t appendTerminated(const char* source, char* destination, std::size_t used, std::size_t limit) {
  const std::size_t added = strnlen(source, limit - used);
  std::memmove(destination + used, source, added);
  destination[used + added] = '\0';
  return static_cast<std::int16_t>(used + added);
}

}  // namespace

void PStringCopy(const unsigned char* source, unsigned char* destination, std::int16_t max) {
  const std::size_t length = std::min<std::size_t>(source[0], pascalLimitOf(max));
  std::memmove(destination + 1, source + 1, length);
  destination[0] = static_cast<unsigned char>(length);
}

std::int16_t PStringCat(const unsigned char* source, unsigned char* destination, std::int16_t max) {
  return appendToPascal(source + 1, source[0], destination, pascalLimitOf(max));
}

std::int16_t CStringPCopy(const char* source, unsigned char* destination, std::int16_t max) {
  destination[0] = 0;
  return CStringPCat(source, destination, max);
}

std::int16_t CStringPCat(const char* source, unsigned char* destination, std::int16_t max) {
  return appendToPascal(source, strnlen(source, kLongestPascalString), destination, pascalLimitOf(max));
}

std::int16_t CStringCopy(const char* source, char* destination, std::int16_t max) {
  return appendTerminated(source, destination, 0, limitOf(max));
}

std::int16_t CStringCat(const char* source, char* destination, std::int16_t max) {
  const std::size_t limit = limitOf(max);
  return appendTerminated(source, destination, strnlen(destination, limit), limit);
}

std::int16_t PStringCmp(const unsigned char* a, const unsigned char* b) {
  const int shorter = std::min(a[0], b[0]);
  for (int i = 1; i <= shorter; ++i) {
    if (const int difference = folded(a[i]) - folded(b[i]); difference != 0) {
      return static_cast<std::int16_t>(difference);
    }
  }
  return static_cast<std::int16_t>(a[0] - b[0]);
}

std::int16_t CStringCmp(const char* a, const char* b) {
  for (;; ++a, ++b) {
    const int fromA = folded(static_cast<unsigned char>(*a));
    const int difference = fromA - folded(static_cast<unsigned char>(*b));
    if (difference != 0 || fromA == 0) {
      return static_cast<std::int16_t>(difference);
    }
  }
}

}  // namespace veltrix
