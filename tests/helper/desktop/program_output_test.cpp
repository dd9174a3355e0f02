#include "helper/desktop/program_output.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <string>
#include <string_view>

#include "tests/support/temporary_folder.h"

namespace {

constexpr std::string_view kJournal = "/run/systemd/journal/stdout";

// The path that stands for the journal's; one without a socket is no journal.
std::string& journalPath() {
  static std::string path = "/nonexistent/journal";
  return path;
}

sockaddr_un addressOf(const std::string& path) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

}  // namespace

// In the place of the C library's for this whole program, so that the journal's library reaches the test's
// own socket and never a journal of the system.
extern "C" int connect(int descriptor, const sockaddr* address, socklen_t length) {
  const auto* const path = reinterpret_cast<const sockaddr_un*>(address);
  if (address->sa_family == AF_UNIX && kJournal == path->sun_path) {
    const sockaddr_un own = addressOf(journalPath());
    return static_cast<int>(syscall(SYS_connect, descriptor, &own, sizeof own));
  }
  return static_cast<int>(syscall(SYS_connect, descriptor, address, length));
}

namespace veltrix {
namespace {

using ::testing::EndsWith;
using ::testing::StartsWith;

struct stat attributesOf(int descriptor) {
  struct stat attributes = {};
  EXPECT_EQ(fstat(descriptor, &attributes), 0);
  return attributes;
}

TEST(ProgramOutput, GoesToTheJournalUnderItsIdentifier) {
  const testing::TemporaryFolder folder;
  journalPath() = folder / "journal";
  const FileDescriptor journal(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const sockaddr_un address = addressOf(journalPath());
  ASSERT_EQ(bind(journal.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(journal.get(), 1), 0);
  {
    const FileDescriptor output = journalOutput("veltrix-script");
    ASSERT_EQ(write(output.get(), "hello\n", 6), 6);
  }
  const FileDescriptor connection(accept4(journal.get(), nullptr, nullptr, SOCK_CLOEXEC));
  std::string text;
  std::array<char, 256> buffer = {};
  for (ssize_t count = 0; (count = read(connection.get(), buffer.data(), buffer.size())) > 0;) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  EXPECT_THAT(text, StartsWith("veltrix-script\n"));
  EXPECT_THAT(text, EndsWith("\nhello\n"));
  journalPath() = "/nonexistent/journal";
}

TEST(ProgramOutput, GoesWhereTheErrorsOfThisProcessGoWithoutAJournal) {
  const FileDescriptor output = journalOutput("name");
  ASSERT_TRUE(output);
  EXPECT_GT(output.get(), STDERR_FILENO);
  EXPECT_EQ(attributesOf(output.get()).st_ino, attributesOf(STDERR_FILENO).st_ino);
}

TEST(ProgramOutput, GoesNowhereWithoutEither) {
  const FileDescriptor errors(dup(STDERR_FILENO));
  close(STDERR_FILENO);
  struct stat given = {};
  {
    const FileDescriptor output = journalOutput("name");
    fstat(output.get(), &given);
  }
  dup2(errors.get(), STDERR_FILENO);
  struct stat nowhere = {};
  ASSERT_EQ(stat("/dev/null", &nowhere), 0);
  EXPECT_EQ(given.st_rdev, nowhere.st_rdev);
}

}  // namespace
}  // namespace veltrix
