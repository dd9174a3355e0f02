#include "helper/desktop/compositor_socket.h"

#include <sys/socket.h>
#include <sys/un.h>

#include <cerrno>

#include "util/system_error.h"

namespace veltrix {

Result<FileDescriptor> connectToCompositor(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) {
    return systemError(ENAMETOOLONG, "connect to", path);
  }
  path.copy(address.sun_path, path.size());
  FileDescriptor descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!descriptor ||
      connect(descriptor.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    return systemError(errno, "connect to", path);
  }
  return descriptor;
}

}  // namespace veltrix
