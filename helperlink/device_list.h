#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

// The connected trackballs as the helper reports them: exchanged raw between processes of one machine,
// integers in its byte order.
struct VeltrixDeviceEntry {
  std::uint16_t vendorID;
  std::uint16_t productID;
  std::uint16_t productVers;  // high byte major, low byte minor, both plain binary
  std::uint16_t interfaceNum;
  char vendorName[128];  // UTF-8, ends at the first NUL or at the end of the field
  char productName[128];
};

inline constexpr std::size_t kVeltrixMaxDevices = 16;
inline constexpr std::uint16_t kVeltrixHelperStateAccessibility = 0x0001;

struct VeltrixDeviceList {
  std::uint16_t count;        // 0 to 16; a larger value is read as 16
  std::uint16_t helperState;  // kVeltrixHelperStateAccessibility; other bits are not read
  VeltrixDeviceEntry device[kVeltrixMaxDevices];
};

static_assert(sizeof(VeltrixDeviceEntry) == 264);
static_assert(sizeof(VeltrixDeviceList) == 4228);
static_assert(std::is_trivially_copyable_v<VeltrixDeviceList>);

// The number of entries that may be read.
inline std::size_t VeltrixDeviceCount(const VeltrixDeviceList& list) {
  return list.count < kVeltrixMaxDevices ? list.count : kVeltrixMaxDevices;
}
