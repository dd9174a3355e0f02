#include "platform/file_manager.h"

#include <systemd/sd-bus.h>

#include <chrono>
#include <cstring>

#include "platform/session_bus.h"

namespace veltrix {

namespace {

constexpr const char* kService = "org.freedesktop.FileManager1";
constexpr const char* kObject = "/org/freedesktop/FileManager1";
constexpr std::chrono::seconds kPatience{10};  // a file manager may have to start first

Error failure(int negativeErrno) {
  return {-negativeErrno, std::string("no file manager answers: ") + std::strerror(-negativeErrno), {}};
}

bool standsForItself(unsigned char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
         std::string_view("-._~/").find(static_cast<char>(byte)) != std::string_view::npos;
}

}  // namespace

std::string fileUrl(std::string_view path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string url = "file://";
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    if (standsForItself(byte)) {
      url += character;
    } else {
      url += {'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
    }
  }
  return url;
}

Status showInFileManager(const std::string& path, const std::string& busAddress) {
  const BusDeadline deadline = std::chrono::steady_clock::now() + kPatience;
  const auto bus = openSessionBus(busAddress, deadline);
  if (!bus) {
    return bus.error();
  }
  sd_bus_message* raw = nullptr;
  int result =
      sd_bus_message_new_method_call(bus.value().get(), &raw, kService, kObject, kService, "ShowItems");
  const BusMessageHandle call(raw);
  if (result >= 0) {
    result = sd_bus_message_append(raw, "ass", 1, fileUrl(path).c_str(), "");
  }
  if (result >= 0) {
    // At least a moment, for 0 would stand for the bus's own long time.
    result = sd_bus_call(bus.value().get(), raw, microsecondsUntil(deadline) + 1, nullptr, nullptr);
  }
  return result < 0 ? Status(failure(result)) : Status(Done());
}

}  // namespace veltrix
