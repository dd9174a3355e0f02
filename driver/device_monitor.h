#pragma once

#include <sys/types.h>

#include <memory>
#include <set>
#include <string>

#include "driver/poll_loop.h"
#include "driverlink/packets.h"
#include "util/file_descriptor.h"

struct udev;
struct udev_device;

namespace veltrix {

// An event node that the driver has to do with.
struct InputNode {
  enum class Kind { kTrackball, kKeyboard };
  Kind kind;
  std::string path;       // below /dev/input
  DeviceAddress address;  // of a trackball
};

class InputNodeListener {
 public:
  virtual ~InputNodeListener() = default;
  // `id` is the node's until it is removed.
  virtual void nodeAdded(const std::string& id, const InputNode& node) noexcept = 0;
  virtual void nodeRemoved(const std::string& id) noexcept = 0;
};

struct UdevContextReleaser {
  void operator()(udev* context) const;
};

// Follows trackballs and keyboards as udev finishes with them and as they go, by the files in which udev
// keeps what it knows of a device: they come when the node has its permissions, and can be seen from within a
// network namespace, where udev's messages do not arrive. The driver's own virtual devices do not count.
class DeviceMonitor final : private PollHandler {
 public:
  // Both must outlive the monitor. `folder` has udev's files.
  DeviceMonitor(PollLoop& loop, InputNodeListener& listener, std::string folder = "/run/udev/data");
  ~DeviceMonitor() override;
  DeviceMonitor(const DeviceMonitor&) = delete;
  DeviceMonitor& operator=(const DeviceMonitor&) = delete;

  // Reports what is there, and from then on what changes.
  Status start();

 private:
  void ready(std::uint32_t events) noexcept override;
  Status synchronize() noexcept;
  void fileChanged(std::uint32_t how, const char* name) noexcept;
  void added(const std::string& id) noexcept;
  void removed(const std::string& id) noexcept;

  PollLoop& fLoop;
  InputNodeListener& fListener;
  const std::string fFolder;
  std::unique_ptr<udev, UdevContextReleaser> fUdev;
  FileDescriptor fWatch;
  std::set<std::string> fKnown;  // ids that were reported
};

}  // namespace veltrix
