#include "driver/link_socket.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <systemd/sd-daemon.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "util/system_error.h"

namespace veltrix {

namespace {

constexpr int kBacklog = 16;
constexpr mode_t kFolderMode = 0755;
constexpr mode_t kSocketMode = 0666;

bool makeNonBlocking(int descriptor) {
  const int flags = fcntl(descriptor, F_GETFL);
  return flags >= 0 && fcntl(descriptor, F_SETFL, flags | O_NONBLOCK) == 0;
}

const sockaddr* generic(const sockaddr_un& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

FileDescriptor newSocket() {
  return FileDescriptor(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

// Whether somebody listens there.
bool isServed(const sockaddr_un& address) {
  const FileDescriptor probe = newSocket();
  return probe && (::connect(probe.get(), generic(address), sizeof address) == 0 || errno == EAGAIN ||
                   errno == EACCES);
}

void removeSocket(const char* path) {
  struct stat status {};
  if (lstat(path, &status) == 0 && S_ISSOCK(status.st_mode))
    ::unlink(path);
}

}  // namespace

Result<FileDescriptor> passedSocket() {
  const int count = sd_listen_fds(1);
  if (count < 0)
    return systemError(-count, "read", "LISTEN_FDS");
  if (count == 0)
    return FileDescriptor();
  FileDescriptor socket(SD_LISTEN_FDS_START);
  if (count > 1 || sd_is_socket_unix(socket.get(), SOCK_SEQPACKET, 1, nullptr, 0) <= 0)
    return Error{EINVAL, "what was passed is not one listening SOCK_SEQPACKET socket", std::nullopt};
  if (!makeNonBlocking(socket.get()))
    return systemError(errno, "prepare", "the socket that was passed");
  return socket;
}

Result<FileDescriptor> listenAt(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path)
    return systemError(ENAMETOOLONG, "listen at", path);
  path.copy(address.sun_path, path.size());
  const std::string folder = std::filesystem::path(path).parent_path();
  if (::mkdir(folder.c_str(), kFolderMode) != 0 && errno != EEXIST)
    return systemError(errno, "make", folder);
  if (isServed(address))
    return systemError(EADDRINUSE, "listen at", path);
  removeSocket(path.c_str());
  FileDescriptor socket = newSocket();
  // Nobody can connect before the last of these.
  if (!socket || ::bind(socket.get(), generic(address), sizeof address) != 0 ||
      ::chmod(path.c_str(), kSocketMode) != 0 || ::listen(socket.get(), kBacklog) != 0) {
    return systemError(errno, "listen at", path);
  }
  return socket;
}

}  // namespace veltrix
