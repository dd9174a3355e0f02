#pragma once

#include <cstdint>

// Byte strings of fixed room. A Pascal string holds its length (0 to 255) in byte 0 and the characters after
// it, without a terminator; a C string ends at its first zero byte. A destination bounded by `max` characters
// must have room for max + 1 bytes. A limit of 0 or below copies nothing.
namespace veltrix {

void PStringCopy(const unsigned char* source, unsigned char* destination, std::int16_t max);
std::int16_t PStringCat(const unsigned char* source, unsigned char* destination, std::int16_t max);
std::int16_t CStringPCopy(const char* source, unsigned char* destination, std::int16_t max);
std::int16_t CStringPCat(const char* source, unsigned char* destination, std::int16_t max);

// These two always write a terminator.
std::int16_t CStringCopy(const char* source, char* destination, std::int16_t max);
std::int16_t CStringCat(const char* source, char* destination, std::int16_t max);

// Comparisons that fold only the letters A to Z: negative, 0 or positive like the first difference a - b,
// then like the difference of the lengths (PStringCmp) or of the terminator (CStringCmp).
std::int16_t PStringCmp(const unsigned char* a, const unsigned char* b);
std::int16_t CStringCmp(const char* a, const char* b);

}  // namespace veltrix
