#include "helper/udev_device_source.h"

#include <sys/epoll.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "driverlink/device_family.h"
#include "helper/device_entry.h"
#include "helperlink/device_kinds.h"
#include "util/udev_attributes.h"

namespace veltrix {

namespace {

struct EnumerateReleaser {
  void operator()(udev_enumerate* enumeration) const { udev_enumerate_unref(enumeration); }
};
using EnumerateHandle = std::unique_ptr<udev_enumerate, EnumerateReleaser>;
using DeviceHandle = std::unique_ptr<udev_device, UdevReleaser>;

Error udevError(const char* what) {
  return Error{errno, std::string("cannot ") + what + ": " + std::strerror(errno), std::nullopt};
}

bool isEventNode(udev_device* device) {
  const char* name = udev_device_get_sysname(device);
  return name != nullptr && std::string_view(name).substr(0, 5) == "event";
}

// The parent is the node's; it lives as long as the node.
udev_device* usbParent(udev_device* node, const char* kind) {
  return udev_device_get_parent_with_subsystem_devtype(node, "usb", kind);
}

VeltrixDeviceEntry entryOf(udev_device* usbDevice, udev_device* interface) {
  VeltrixDeviceEntry entry{};
  entry.vendorID = udevHexAttribute(usbDevice, "idVendor");
  entry.productID = udevHexAttribute(usbDevice, "idProduct");
  entry.productVers = productVersionFromBcd(udevHexAttribute(usbDevice, "bcdDevice"));
  entry.interfaceNum = udevHexAttribute(interface, "bInterfaceNumber");
  setEntryText(entry.vendorName, udevAttribute(usbDevice, "manufacturer"));
  setEntryText(entry.productName, udevAttribute(usbDevice, "product"));
  return entry;
}

int monitorReadable(sd_event_source* /*source*/, int /*descriptor*/, std::uint32_t /*events*/, void* source) {
  static_cast<UdevDeviceSource*>(source)->readMonitor();
  return 0;
}

}  // namespace

void UdevReleaser::operator()(udev* context) const {
  udev_unref(context);
}
void UdevReleaser::operator()(udev_device* device) const {
  udev_device_unref(device);
}
void UdevReleaser::operator()(udev_monitor* monitor) const {
  udev_monitor_unref(monitor);
}

Status UdevDeviceSource::start(DeviceListener& listener) {
  fListener = &listener;
  fUdev.reset(udev_new());
  if (fUdev == nullptr)
    return udevError("reach udev");
  // Watching begins first, so that nothing is missed in between; what is reported twice counts once.
  const Status watching = watch();
  return watching ? synchronise() : watching;
}

Status UdevDeviceSource::watch() {
  fMonitor.reset(udev_monitor_new_from_netlink(fUdev.get(), "udev"));
  if (fMonitor == nullptr ||
      udev_monitor_filter_add_match_subsystem_devtype(fMonitor.get(), "input", nullptr) < 0 ||
      udev_monitor_enable_receiving(fMonitor.get()) < 0) {
    return udevError("watch udev for trackballs");
  }
  sd_event_source* source = nullptr;
  const int result =
      sd_event_add_io(fLoop, &source, udev_monitor_get_fd(fMonitor.get()), EPOLLIN, monitorReadable, this);
  fSource.reset(source);
  if (result < 0) {
    errno = -result;
    return udevError("watch udev for trackballs");
  }
  return Done{};
}

// Brings what is known in line with what is there: at the start, and after messages were lost.
Status UdevDeviceSource::synchronise() {
  const EnumerateHandle enumeration(udev_enumerate_new(fUdev.get()));
  if (enumeration == nullptr || udev_enumerate_add_match_subsystem(enumeration.get(), "input") < 0 ||
      udev_enumerate_add_match_sysname(enumeration.get(), "event*") < 0 ||
      udev_enumerate_scan_devices(enumeration.get()) < 0) {
    return udevError("list the input devices");
  }
  std::map<std::string, std::string> gone = fDeviceOfNode;
  udev_list_entry* item = nullptr;
  udev_list_entry_foreach(item, udev_enumerate_get_list_entry(enumeration.get())) {
    const char* path = udev_list_entry_get_name(item);
    gone.erase(path);
    const DeviceHandle node(udev_device_new_from_syspath(fUdev.get(), path));
    if (node != nullptr)
      nodeAdded(node.get());
  }
  for (const auto& [path, device] : gone) nodeRemoved(path);
  return Done{};
}

void UdevDeviceSource::readMonitor() {
  errno = 0;
  const DeviceHandle node(udev_monitor_receive_device(fMonitor.get()));
  if (node == nullptr) {
    if (errno == ENOBUFS)
      static_cast<void>(synchronise());
    return;
  }
  if (!isEventNode(node.get()))
    return;
  const char* action = udev_device_get_action(node.get());
  const std::string_view what = action != nullptr ? action : "";
  if (what == "add")
    nodeAdded(node.get());
  if (what == "remove")
    nodeRemoved(udev_device_get_syspath(node.get()));
}

void UdevDeviceSource::nodeAdded(udev_device* node) {
  udev_device* usbDevice = usbParent(node, "usb_device");
  if (usbDevice == nullptr || udevHexAttribute(usbDevice, "idVendor") != kFamilyVendorId)
    return;
  const std::string nodePath = udev_device_get_syspath(node);
  const std::string devicePath = udev_device_get_syspath(usbDevice);
  if (!fDeviceOfNode.emplace(nodePath, devicePath).second)
    return;
  std::set<std::string>& nodes = fNodesOfDevice[devicePath];
  nodes.insert(nodePath);
  if (nodes.size() > 1)
    return;
  fListener->deviceAttached({devicePath, entryOf(usbDevice, usbParent(node, "usb_interface"))});
}

void UdevDeviceSource::nodeRemoved(const std::string& nodePath) {
  const auto node = fDeviceOfNode.find(nodePath);
  if (node == fDeviceOfNode.end())
    return;
  const std::string devicePath = node->second;
  fDeviceOfNode.erase(node);
  std::set<std::string>& nodes = fNodesOfDevice[devicePath];
  nodes.erase(nodePath);
  if (!nodes.empty())
    return;
  fNodesOfDevice.erase(devicePath);
  fListener->deviceDetached(devicePath);
}

}  // namespace veltrix
