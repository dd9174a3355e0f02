#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "helper/device_source.h"
#include "platform/event_loop.h"

struct udev;
struct udev_device;
struct udev_monitor;

namespace veltrix {

struct UdevReleaser {
  void operator()(udev* context) const;
  void operator()(udev_device* device) const;
  void operator()(udev_monitor* monitor) const;
};

// The real trackballs of the family: USB devices of its vendor that the kernel offers input from. A device is
// connected from its first event node to its last.
class UdevDeviceSource final : public DeviceSource {
 public:
  // The loop delivers the changes and must outlive the source.
  explicit UdevDeviceSource(sd_event* loop) : fLoop(loop) {}
  Status start(DeviceListener& listener) override;

  // Called by the loop when the monitor has something to say.
  void readMonitor();

 private:
  Status watch();
  Status synchronise();
  void nodeAdded(udev_device* node);
  void nodeRemoved(const std::string& nodePath);

  sd_event* fLoop;
  DeviceListener* fListener = nullptr;
  std::unique_ptr<udev, UdevReleaser> fUdev;
  std::unique_ptr<udev_monitor, UdevReleaser> fMonitor;
  EventSourceHandle fSource;
  std::map<std::string, std::string> fDeviceOfNode;  // by path; a removed node cannot name its parent
  std::map<std::string, std::set<std::string>> fNodesOfDevice;
};

}  // namespace veltrix
