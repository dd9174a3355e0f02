#include "driver/login_active_user.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tests/driver/fake_poll_loop.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

constexpr const char* kSeatFile = "/run/systemd/seats/seat0";

// The login service's files are at a fixed place; this process gets a place of its own there.
class LoginActiveUserTest : public ::testing::Test, public ActiveUserListener {
 protected:
  static void SetUpTestSuite() {
    const int user = geteuid() == 0 ? 0 : CLONE_NEWUSER;
    ASSERT_EQ(unshare(CLONE_NEWNS | user), 0) << std::strerror(errno);
    ASSERT_EQ(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0) << std::strerror(errno);
    ASSERT_EQ(mount("tmpfs", "/run", "tmpfs", 0, nullptr), 0) << std::strerror(errno);
  }

  void SetUp() override {
    std::filesystem::remove_all("/run/systemd");
    startLoginService();
  }

  void activeUserChanged() noexcept override { ++changes; }

  static void startLoginService() { std::filesystem::create_directories("/run/systemd/seats"); }

  // Replaces the file as the service does.
  static void setSeat(const std::string& text) {
    testing::writeFile("/run/systemd/seats/.new", text);
    std::filesystem::rename("/run/systemd/seats/.new", kSeatFile);
  }

  testing::FakePollLoop loop;
  int changes = 0;
};

TEST_F(LoginActiveUserTest, IsTheUserOfTheSeatsActiveSession) {
  setSeat("IS_SEAT0=1\nACTIVE=c2\nACTIVE_UID=1234\n");
  LoginActiveUser user(loop);
  EXPECT_EQ(user.current(), uid_t{1234});
}

TEST_F(LoginActiveUserTest, IsNobodyWithoutAnActiveSession) {
  LoginActiveUser user(loop);
  EXPECT_EQ(user.current(), std::nullopt);
  setSeat("IS_SEAT0=1\n");
  EXPECT_EQ(user.current(), std::nullopt);
}

TEST_F(LoginActiveUserTest, IsToldWhenItChanges) {
  setSeat("ACTIVE=c2\nACTIVE_UID=1234\n");
  LoginActiveUser user(loop);
  user.setListener(this);
  loop.run();
  EXPECT_EQ(changes, 0);
  setSeat("ACTIVE=c3\nACTIVE_UID=77\n");
  loop.run();
  EXPECT_GE(changes, 1);
  EXPECT_EQ(user.current(), uid_t{77});
}

TEST_F(LoginActiveUserTest, IsNobodyWithoutALoginServiceAndSaysSoOnce) {
  std::filesystem::remove_all("/run/systemd");
  LoginActiveUser user(loop);
  ::testing::internal::CaptureStderr();
  user.setListener(this);
  EXPECT_EQ(user.current(), std::nullopt);
  const std::string text = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
}

TEST_F(LoginActiveUserTest, SeesALoginServiceThatComesLater) {
  std::filesystem::remove_all("/run/systemd");
  LoginActiveUser user(loop);
  EXPECT_EQ(user.current(), std::nullopt);
  startLoginService();
  setSeat("ACTIVE=c2\nACTIVE_UID=1234\n");
  EXPECT_EQ(user.current(), uid_t{1234});
}

TEST_F(LoginActiveUserTest, IsNobodyWhenChangesCannotBeWatched) {
  setSeat("ACTIVE=c2\nACTIVE_UID=1234\n");
  loop.refusesMore = true;
  LoginActiveUser user(loop);
  EXPECT_EQ(user.current(), std::nullopt);
}

TEST_F(LoginActiveUserTest, LeavesTheLoopAtItsEnd) {
  {
    LoginActiveUser user(loop);
    user.setListener(this);
    EXPECT_EQ(loop.count(), 1U);
  }
  EXPECT_EQ(loop.count(), 0U);
}

}  // namespace
}  // namespace veltrix
