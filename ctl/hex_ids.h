#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// Ids and versions as the terminal shows and takes them.
namespace veltrix::ctl {

// What names a device: vendor, product and version.
struct DeviceIds {
  std::uint16_t vendor = 0;
  std::uint16_t product = 0;
  std::uint16_t version = 0;
};

// One to four hexadecimal digits with or without "0x"; nothing for anything else.
std::optional<std::uint16_t> parseHexId(std::string_view text);

// "VENDOR:PRODUCT:VERSION"; nothing for anything else.
std::optional<DeviceIds> parseDeviceIds(std::string_view text);

std::string hexId(std::uint16_t id);              // "A1D0"
std::string deviceIdsText(const DeviceIds& ids);  // "A1D0:2041:0107"
std::string versionText(std::uint16_t version);   // "1.07"

// Two lower-case digits for each byte.
std::string hexBytes(std::span<const unsigned char> bytes);

}  // namespace veltrix::ctl
