#include "driver/device_monitor.h"

#include <dirent.h>
#include <libudev.h>
#include <sys/epoll.h>
#include <sys/inotify.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

#include "driver/input_node.h"
#include "util/system_error.h"

namespace veltrix {

namespace {

struct FolderReleaser {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
using Folder = std::unique_ptr<DIR, FolderReleaser>;

struct DeviceReleaser {
  void operator()(udev_device* device) const { udev_device_unref(device); }
};
using Device = std::unique_ptr<udev_device, DeviceReleaser>;

// Files of character devices of the input subsystem are named by their number.
constexpr std::string_view kInputPrefix = "c13:";
constexpr unsigned kInputMajor = 13;

bool isInputId(std::string_view name) {
  return name.substr(0, kInputPrefix.size()) == kInputPrefix;
}

Device deviceOf(udev* context, std::string_view id) {
  unsigned number = 0;
  const std::string_view digits = id.substr(kInputPrefix.size());
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size())
    return nullptr;
  return Device(udev_device_new_from_devnum(context, 'c', makedev(kInputMajor, number)));
}

}  // namespace

void UdevContextReleaser::operator()(udev* context) const {
  udev_unref(context);
}

DeviceMonitor::DeviceMonitor(PollLoop& loop, InputNodeListener& listener, std::string folder)
    : fLoop(loop), fListener(listener), fFolder(std::move(folder)) {}

DeviceMonitor::~DeviceMonitor() {
  if (fWatch)
    fLoop.remove(fWatch.get());
}

Status DeviceMonitor::start() {
  fUdev.reset(udev_new());
  if (fUdev == nullptr)
    return systemError(errno, "reach", "udev");
  // Watching begins first, so that nothing is missed in between; what is seen twice counts once.
  FileDescriptor watch(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (!watch || inotify_add_watch(watch.get(), fFolder.c_str(), IN_MOVED_TO | IN_DELETE | IN_ONLYDIR) < 0)
    return systemError(errno, "watch", fFolder);
  if (Status added = fLoop.add(watch.get(), EPOLLIN, *this); !added)
    return added;
  fWatch = std::move(watch);
  return synchronize();
}

// Brings what is known in line with what is there: at the start, and after messages were lost.
Status DeviceMonitor::synchronize() noexcept {
  const Folder folder(::opendir(fFolder.c_str()));
  if (folder == nullptr)
    return systemError(errno, "list", fFolder);
  std::set<std::string> gone = fKnown;
  while (const dirent* file = ::readdir(folder.get())) {
    if (!isInputId(file->d_name))
      continue;
    gone.erase(file->d_name);
    added(file->d_name);
  }
  for (const std::string& id : gone) removed(id);
  return Done{};
}

void DeviceMonitor::ready(std::uint32_t /*events*/) noexcept {
  alignas(inotify_event) std::array<char, 4096> buffer{};
  const ssize_t size = ::read(fWatch.get(), buffer.data(), buffer.size());
  for (ssize_t offset = 0; offset < size;) {
    inotify_event event{};
    std::memcpy(&event, buffer.data() + offset, sizeof event);
    if ((event.mask & IN_Q_OVERFLOW) != 0)
      static_cast<void>(synchronize());
    else if (event.len > 0)
      fileChanged(event.mask, buffer.data() + offset + sizeof event);
    offset += static_cast<ssize_t>(sizeof event + event.len);
  }
}

void DeviceMonitor::fileChanged(std::uint32_t how, const char* name) noexcept {
  if (!isInputId(name))
    return;
  if ((how & IN_MOVED_TO) != 0)
    added(name);
  else
    removed(name);
}

void DeviceMonitor::added(const std::string& id) noexcept {
  if (fKnown.count(id) > 0)
    return;
  const Device device = deviceOf(fUdev.get(), id);
  const auto node = device != nullptr ? inputNodeOf(device.get()) : std::nullopt;
  if (!node)
    return;
  fKnown.insert(id);
  fListener.nodeAdded(id, *node);
}

void DeviceMonitor::removed(const std::string& id) noexcept {
  if (fKnown.erase(id) > 0)
    fListener.nodeRemoved(id);
}

}  // namespace veltrix
