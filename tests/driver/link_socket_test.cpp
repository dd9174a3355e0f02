#include "driver/link_socket.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cerrno>

#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using testing::TemporaryFolder;

FileDescriptor socketOf(int type) {
  return FileDescriptor(::socket(AF_UNIX, type | SOCK_CLOEXEC, 0));
}

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

bool canConnect(const std::string& path) {
  const auto address = addressOf(path);
  const FileDescriptor socket = socketOf(SOCK_SEQPACKET);
  return ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

TEST(ListenAt, MakesASocketThatEverybodyMayConnectTo) {
  const TemporaryFolder folder;
  const std::string path = folder / "run/driver.sock";
  const auto socket = listenAt(path);
  ASSERT_TRUE(socket);
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0666U);
  EXPECT_TRUE(canConnect(path));
  EXPECT_NE(fcntl(socket.value().get(), F_GETFL) & O_NONBLOCK, 0);
}

TEST(ListenAt, TakesThePlaceOfASocketThatNobodyServes) {
  const TemporaryFolder folder;
  const std::string path = folder / "driver.sock";
  listenAt(path).value().reset();
  ASSERT_FALSE(canConnect(path));
  const auto socket = listenAt(path);
  EXPECT_TRUE(socket && canConnect(path));
}

TEST(ListenAt, LeavesAnotherDriversSocketAlone) {
  const TemporaryFolder folder;
  const std::string path = folder / "driver.sock";
  const auto first = listenAt(path);
  const auto second = listenAt(path);
  ASSERT_FALSE(second);
  EXPECT_EQ(second.error().code, EADDRINUSE);
  EXPECT_TRUE(canConnect(path));
}

TEST(ListenAt, LeavesAFileAlone) {
  const TemporaryFolder folder;
  testing::writeFile(folder / "driver.sock", "text");
  EXPECT_FALSE(listenAt(folder / "driver.sock"));
  EXPECT_EQ(std::filesystem::file_size(folder / "driver.sock"), 4U);
}

TEST(ListenAt, RefusesPathsThatAreTooLongOrNowhere) {
  const TemporaryFolder folder;
  EXPECT_FALSE(listenAt(folder / std::string(200, 'x')));
  EXPECT_FALSE(listenAt(folder / "a/b/driver.sock"));
  EXPECT_FALSE(listenAt(""));
}

// What a process that was given `count` such descriptors makes of them: 0 a socket, 2 an error.
int passedWith(const FileDescriptor& descriptor, int count) {
  dup2(descriptor.get(), 3);
  if (count > 1)
    dup2(descriptor.get(), 4);
  setenv("LISTEN_PID", std::to_string(getpid()).c_str(), 1);
  setenv("LISTEN_FDS", std::to_string(count).c_str(), 1);
  const auto socket = passedSocket();
  if (!socket)
    return 2;
  const bool prepared = (fcntl(socket.value().get(), F_GETFL) & O_NONBLOCK) != 0 &&
                        (fcntl(socket.value().get(), F_GETFD) & FD_CLOEXEC) != 0;
  return prepared && socket.value().get() == 3 ? 0 : 3;
}

FileDescriptor listening(int type, const std::string& path) {
  FileDescriptor socket = socketOf(type);
  const auto address = addressOf(path);
  ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
  ::listen(socket.get(), 1);
  return socket;
}

TEST(PassedSocketDeathTest, IsTakenFromTheServiceManager) {
  const TemporaryFolder folder;
  const auto socket = listening(SOCK_SEQPACKET, folder / "s");
  EXPECT_EXIT(_exit(passedWith(socket, 1)), ::testing::ExitedWithCode(0), "");
}

TEST(PassedSocketDeathTest, MayBeMissing) {
  unsetenv("LISTEN_FDS");
  const auto socket = passedSocket();
  ASSERT_TRUE(socket);
  EXPECT_FALSE(socket.value());
}

TEST(PassedSocketDeathTest, IsNothingElse) {
  const TemporaryFolder folder;
  const auto stream = listening(SOCK_STREAM, folder / "stream");
  EXPECT_EXIT(_exit(passedWith(stream, 1)), ::testing::ExitedWithCode(2), "");
  const auto idle = socketOf(SOCK_SEQPACKET);
  EXPECT_EXIT(_exit(passedWith(idle, 1)), ::testing::ExitedWithCode(2), "");
  const auto socket = listening(SOCK_SEQPACKET, folder / "s");
  EXPECT_EXIT(_exit(passedWith(socket, 2)), ::testing::ExitedWithCode(2), "");
}

}  // namespace
}  // namespace veltrix
