#include "pane/device_report.h"

#include <cstddef>
#include <cstdio>

namespace veltrix {
namespace {

constexpr std::size_t kUsualReportSize = 256;

}  // namespace

std::array<bool, kDeviceKindCount> presentKinds(const VeltrixDeviceList& list) {
  std::array<bool, kDeviceKindCount> present{};
  for (std::size_t i = 0; i < VeltrixDeviceCount(list); ++i) {
    const DeviceKind* kind = findDeviceKind(list.device[i].productID);
    if (kind != nullptr && kind->selectorColumn >= 0) {
      present.at(static_cast<std::size_t>(kind->selectorColumn)) = true;
    }
  }
  return present;
}

std::string deviceTitle(std::uint16_t productId, std::uint16_t version) {
  const DeviceKind* kind = findDeviceKind(productId);
  std::array<char, 32> revision{};
  std::snprintf(revision.data(), revision.size(), " Rev. %u.%02u", version >> 8U, version & 0xFFU);
  return std::string(kind != nullptr ? kind->name : "") + revision.data();
}

std::string deviceHelpText(const VeltrixDeviceList& list, std::string_view noDevice) {
  if (list.count == 0) {
    return std::string(noDevice);
  }
  std::string text;
  text.reserve(kUsualReportSize);
  for (std::size_t i = 0; i < VeltrixDeviceCount(list); ++i) {
    text += deviceTitle(list.device[i].productID, list.device[i].productVers) + "\n";
  }
  return text;
}

std::string completedVersionLabel(std::string label, std::string_view version) {
  if (!label.empty() && label.back() == '#') {
    label.pop_back();
    label += version;
  }
  return label;
}

}  // namespace veltrix
