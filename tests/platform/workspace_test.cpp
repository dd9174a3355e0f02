#include "platform/workspace.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>

#include <cerrno>
#include <chrono>

#include "platform/session_bus.h"
#include "tests/support/environment.h"
#include "tests/support/private_bus.h"
#include "tests/support/program_answer.h"

namespace veltrix {
namespace {

using testing::PrivateBus;
using testing::ScopedEnvironment;
using namespace std::chrono_literals;

constexpr const char* kTellArguments = "{ echo \"$# $1\"; echo end; } > \"$answer\"\n";

class Workspace : public ::testing::Test {
 protected:
  Workspace() { fAnswer.writeProgram(fFolder / "bin/xdg-open", kTellArguments); }

  std::string addApplication(const std::string& name) {
    fAnswer.writeProgram(fFolder / (name + ".app/" + name), "{ echo \"ran $0\"; echo end; } > \"$answer\"\n");
    return fFolder / (name + ".app");
  }

  std::string answer() const { return fAnswer.text(); }

  testing::TemporaryFolder fFolder;
  testing::ProgramAnswer fAnswer{fFolder / "answer"};
  ScopedEnvironment fPath{"PATH", (fFolder / "bin") + ":/usr/bin:/bin"};
};

TEST_F(Workspace, ApplicationIsStartedByItsFolder) {
  const std::string application = addApplication("Some Thing");
  ASSERT_TRUE(launchApplication(application).ok());
  EXPECT_EQ(answer(), "ran " + application + "/Some Thing\nend\n");
}

TEST_F(Workspace, FinalSlashChangesNothing) {
  const std::string application = addApplication("Thing");
  ASSERT_TRUE(launchApplication(application + "/").ok());
  EXPECT_EQ(answer(), "ran " + application + "/Thing\nend\n");
}

TEST_F(Workspace, MissingApplicationIsReported) {
  EXPECT_EQ(launchApplication(fFolder / "Missing.app").error().code, ENOENT);
  EXPECT_FALSE(launchApplication("").ok());
  EXPECT_FALSE(launchApplication("/").ok());
}

TEST_F(Workspace, FileGoesToTheDesktopsOpenerAsOneArgument) {
  const std::string file = fFolder / "a b; c 'd'.txt";
  testing::writeFile(file, "");
  ASSERT_TRUE(openFile(file).ok());
  EXPECT_EQ(answer(), "1 " + file + "\nend\n");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(Workspace, FolderGoesToTheDesktopsOpener) {
  ASSERT_TRUE(openFile(fFolder.path() + "/").ok());
  EXPECT_EQ(answer(), "1 " + fFolder.path() + "\nend\n");
}

TEST_F(Workspace, ApplicationFolderIsStartedWhenOpened) {
  const std::string application = addApplication("Veltrix Thing");
  ASSERT_TRUE(openFile(application).ok());
  EXPECT_EQ(answer(), "ran " + application + "/Veltrix Thing\nend\n");
}

TEST_F(Workspace, FileThatOnlyEndsLikeAnApplicationIsAFile) {
  testing::writeFile(fFolder / "Thing.app", "");
  ASSERT_TRUE(openFile(fFolder / "Thing.app").ok());
  EXPECT_EQ(answer(), "1 " + (fFolder / "Thing.app") + "\nend\n");
}

TEST_F(Workspace, OnlyAbsolutePathsThatExistAreOpened) {
  EXPECT_EQ(openFile("").error().code, EINVAL);
  EXPECT_EQ(openFile("--help").error().code, EINVAL);
  EXPECT_EQ(openFile("relative").error().code, EINVAL);
  EXPECT_EQ(openFile(fFolder / "missing").error().code, ENOENT);
}

TEST_F(Workspace, AddressGoesToTheDesktopsOpenerAsOneArgument) {
  ASSERT_TRUE(openUrl("https://veltrix.aldmoor.example/?a=1&b=$(c)").ok());
  EXPECT_EQ(answer(), "1 https://veltrix.aldmoor.example/?a=1&b=$(c)\nend\n");
}

TEST_F(Workspace, OnlyTextsWithASchemeAreAddresses) {
  for (const char* text : {"", ":", "/etc/passwd", "--help", "-x:y", "1a:b", "a b:c", "www.example"}) {
    EXPECT_EQ(openUrl(text).error().code, EINVAL) << text;
  }
}

TEST_F(Workspace, DesktopWithoutAnOpenerIsReported) {
  const ScopedEnvironment nothing("PATH", fFolder / "empty");
  EXPECT_EQ(openUrl("https://veltrix.aldmoor.example/").error().code, ENOENT);
}

// The opener that desktops really have, with a browser that is a script.
TEST_F(Workspace, RealOpenerHandsAnAddressToTheBrowser) {
  const ScopedEnvironment path("PATH", "/usr/bin:/bin");
  const ScopedEnvironment home("HOME", fFolder.path());
  const ScopedEnvironment noDesktop("XDG_CURRENT_DESKTOP", std::nullopt);
  const ScopedEnvironment noDisplay("DISPLAY", std::nullopt);
  const ScopedEnvironment noWayland("WAYLAND_DISPLAY", std::nullopt);
  fAnswer.writeProgram(fFolder / "browser", kTellArguments);
  const ScopedEnvironment browser("BROWSER", fFolder / "browser");
  ASSERT_TRUE(openUrl("https://veltrix.aldmoor.example/support").ok());
  EXPECT_EQ(answer(), "1 https://veltrix.aldmoor.example/support\nend\n");
}

// What a file manager was asked to show.
struct Shown {
  std::string url;
  std::string startupId = "(none)";
};

// A file manager on the bus, played by the test. Its place is taken as long as it lives.
class FileManager {
 public:
  explicit FileManager(const PrivateBus& bus)
      : fBus(std::move(openSessionBus(bus.address(), std::chrono::steady_clock::now() + 10s).value())) {
    sd_bus_add_filter(fBus.get(), nullptr, take, this);
    EXPECT_GE(sd_bus_request_name(fBus.get(), "org.freedesktop.FileManager1", 0), 0);
  }

  // Waits for a request, answers it, and waits until whoever asked has read that and left: without an answer
  // it would open the folder, and by the next test's means.
  Shown wait() {
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (fShown.url.empty() && std::chrono::steady_clock::now() < deadline) {
      if (sd_bus_process(fBus.get(), nullptr) == 0) {
        sd_bus_wait(fBus.get(), 100000);
      }
    }
    sd_bus_flush(fBus.get());
    while (isThere(fAsker) && std::chrono::steady_clock::now() < deadline) sd_bus_wait(fBus.get(), 1000);
    return fShown;
  }

 private:
  bool isThere(const std::string& name) {
    sd_bus_message* raw = nullptr;
    int there = 0;
    sd_bus_call_method(fBus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                       "NameHasOwner", nullptr, &raw, "s", name.c_str());
    const BusMessageHandle reply(raw);
    return raw != nullptr && sd_bus_message_read(raw, "b", &there) > 0 && there != 0;
  }

  static int take(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
    if (sd_bus_message_is_method_call(message, "org.freedesktop.FileManager1", "ShowItems") <= 0) {
      return 0;
    }
    auto* const manager = static_cast<FileManager*>(self);
    Shown& shown = manager->fShown;
    manager->fAsker = sd_bus_message_get_sender(message);
    const char* url = "";
    const char* startupId = "";
    sd_bus_message_enter_container(message, 'a', "s");
    sd_bus_message_read(message, "s", &url);
    sd_bus_message_exit_container(message);
    sd_bus_message_read(message, "s", &startupId);
    shown = {url, startupId};
    return sd_bus_reply_method_return(message, nullptr);
  }

  BusHandle fBus;
  Shown fShown;
  std::string fAsker;
};

class FileSelection : public Workspace {
 protected:
  PrivateBus fBus;
  ScopedEnvironment fAddress{"DBUS_SESSION_BUS_ADDRESS", fBus.address()};
};

TEST_F(FileSelection, FileManagerIsAskedToShowTheFile) {
  FileManager manager(fBus);
  ASSERT_TRUE(selectFile("/home/me/Desktop/Veltrix Info.plist").ok());
  const Shown shown = manager.wait();
  EXPECT_EQ(shown.url, "file:///home/me/Desktop/Veltrix%20Info.plist");
  EXPECT_EQ(shown.startupId, "");
}

TEST_F(FileSelection, WithoutAFileManagerTheFolderIsOpened) {
  ASSERT_TRUE(selectFile(fFolder / "missing.txt").ok());
  EXPECT_EQ(answer(), "1 " + fFolder.path() + "\nend\n");
}

TEST_F(FileSelection, WithoutABusTheFolderIsOpened) {
  fBus.stop();
  ASSERT_TRUE(selectFile(fFolder / "file.txt").ok());
  EXPECT_EQ(answer(), "1 " + fFolder.path() + "\nend\n");
}

TEST_F(FileSelection, NobodyWaitsForABusThatHangs) {
  fBus.freeze();
  const auto before = std::chrono::steady_clock::now();
  ASSERT_TRUE(selectFile(fFolder / "file.txt").ok());
  EXPECT_LT(std::chrono::steady_clock::now() - before, 5s);  // the bus is given ten
  fBus.thaw();
  EXPECT_EQ(answer(), "1 " + fFolder.path() + "\nend\n");
}

TEST_F(FileSelection, OnlyAbsolutePathsAreShown) {
  EXPECT_EQ(selectFile("file.txt").error().code, EINVAL);
  EXPECT_EQ(selectFile("").error().code, EINVAL);
}

}  // namespace
}  // namespace veltrix
