#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// The layout of version 00 of the binary form: magic, objects, a table of their offsets, a trailer. Each
// object starts with a marker byte: the kind in the high half, a size in the low half. All numbers have their
// most significant byte first.
namespace veltrix::plist::binary {

enum Kind : std::uint8_t {
  kSingle = 0x0,  // the low half says which value it is
  kInteger = 0x1,
  kReal = 0x2,
  kDate = 0x3,
  kData = 0x4,
  kAscii = 0x5,
  kUtf16 = 0x6,
  kArray = 0xA,
  kDictionary = 0xD,
};

inline constexpr std::uint8_t kFalse = 0x08;  // low halves of kSingle
inline constexpr std::uint8_t kTrue = 0x09;
inline constexpr std::uint8_t kCountFollows = 0x0F;  // the count is an integer object after the marker

inline constexpr std::string_view kMagic = "bplist";
inline constexpr std::size_t kHeadSize = 8;  // "bplist00"
inline constexpr std::size_t kTrailerSize = 32;
// Places in the trailer.
inline constexpr std::size_t kOffsetSizeAt = 6;
inline constexpr std::size_t kReferenceSizeAt = 7;
inline constexpr std::size_t kObjectCountAt = 8;
inline constexpr std::size_t kRootAt = 16;
inline constexpr std::size_t kTableAt = 24;

}  // namespace veltrix::plist::binary
