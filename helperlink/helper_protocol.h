#pragma once

#include <cstddef>
#include <cstdint>

namespace veltrix {

// A four-character code: the first character in the most significant byte.
constexpr std::uint32_t fourCharCode(const char (&text)[5]) {
  std::uint32_t code = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    code = (code << 8U) | static_cast<unsigned char>(text[i]);
  }
  return code;
}

inline constexpr std::uint32_t kVeltrixEventClass = fourCharCode("AVLX");
inline constexpr std::uint32_t kGetConnectedDevicesEvent =
    fourCharCode("VXGc");                                                   // pane to helper, with reply
inline constexpr std::uint32_t kHelperMessageEvent = fourCharCode("VXHm");  // pane to helper, no reply
inline constexpr std::uint32_t kDeviceStateEvent = fourCharCode("VXDe");    // helper to pane
inline constexpr std::uint32_t kDeviceListType = fourCharCode("VXCt");
inline constexpr std::uint32_t kDeviceStateType = fourCharCode("VXDt");
inline constexpr std::uint32_t kUnsigned32Type = fourCharCode("magn");
inline constexpr std::uint32_t kProcessSerialNumberType = fourCharCode("psn ");
inline constexpr std::uint32_t kDirectObjectKeyword = fourCharCode("----");

inline constexpr std::uint32_t kPaneShownMessage = fourCharCode("VXR1");
inline constexpr std::uint32_t kPaneLeftMessage = fourCharCode("VXR0");
inline constexpr std::uint32_t kSettingsChangedMessage = fourCharCode("VXUp");

inline constexpr std::size_t kDeviceStateBytes = 16;

inline constexpr unsigned char kHelperProcessName[] = "\x0DVeltrixHelper";  // length byte and characters

}  // namespace veltrix
