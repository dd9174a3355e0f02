#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <chrono>
#include <filesystem>

#include "platform/keyboard_layout.h"
#include "tests/support/environment.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wait_until.h"
#include "tests/support/x_server.h"
#include "util/file_descriptor.h"

namespace veltrix {
namespace {

// What a key types on the layout of a compositor, else on the Greek one.
char16_t typed(const std::string& socket, std::uint16_t key) {
  const auto layout = KeyboardLayout::current({"", socket, LayoutNames{"", "gr", "", ""}, ""});
  std::uint32_t state = 0;
  return layout ? layout.value().translate(key, 0, state).value_or(0xFFFF) : u'\0';
}

// The layout of a desktop that a Wayland compositor runs: one whose keyboard is that of an X server.
class WaylandKeymap : public ::testing::Test {
 protected:
  WaylandKeymap() { fServer.setLayout({"fr"}); }

  bool compositorIsReady() {
    return testing::waitUntil([this] { return std::filesystem::exists(fSocket); });
  }

  testing::TemporaryFolder fFolder;
  std::string fSocket = fFolder / "wayland-test";
  testing::XServer fServer;
};

TEST_F(WaylandKeymap, TheSeatsLayoutComesBeforeTheEnvironments) {
  const testing::ChildProcess compositor(
      {"weston", "--backend=x11-backend.so", "--use-pixman", "--no-config", "--socket=wayland-test",
       "--width=320", "--height=240", "--idle-time=0"},
      {{"DISPLAY", fServer.display()},
       {"XDG_RUNTIME_DIR", fFolder.path()},
       {"WAYLAND_DISPLAY", std::nullopt}});
  ASSERT_TRUE(compositorIsReady()) << compositor.output();
  EXPECT_EQ(typed(fSocket, KEY_Q), u'a') << compositor.output();
  {
    // That connection is somebody else's.
    const testing::ScopedEnvironment taken("WAYLAND_SOCKET", "0");
    EXPECT_EQ(typed(fSocket, KEY_P), u'π');
  }
}

TEST(SilentCompositor, IsGivenUpSoon) {
  const testing::TemporaryFolder folder;
  const std::string path = folder / "wayland-silent";
  const FileDescriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener.get(), 1), 0);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(typed(path, KEY_P), u'π');
  const auto passed = std::chrono::steady_clock::now() - start;
  EXPECT_LT(passed, std::chrono::seconds(5));
}

}  // namespace
}  // namespace veltrix
