#include "helper/desktop/compositor.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "helper/desktop/compositor_wire.h"
#include "tests/helper/desktop/loop_runner.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using ::testing::Each;
using ::testing::HasSubstr;
using testing::wordOf;
using namespace std::chrono_literals;

std::string answer(const std::string& body) {
  std::string message = compositorCommand(body);
  return message;  // an answer to a command has the same frame
}

// A socket that the test answers at by hand.
class CompositorTest : public ::testing::Test {
 protected:
  CompositorTest() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    fPath.copy(address.sun_path, fPath.size());
    EXPECT_EQ(bind(fListening.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(fListening.get(), 1), 0);
  }

  void tell(const char* command) {
    fCompositor.tell(command, [this](const Status& status) { fOutcomes.push_back(wordOf(status)); });
  }
  // Takes a connection and reads the command that comes on it.
  std::string accept() {
    fAccepted.reset(accept4(fListening.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    EXPECT_TRUE(fAccepted);
    char bytes[256];
    ssize_t count = -1;
    EXPECT_TRUE(fLoop.runUntil([&] { return (count = recv(fAccepted.get(), bytes, sizeof bytes, 0)) > 0; }));
    return {bytes, static_cast<std::size_t>(count)};
  }
  void say(std::string_view bytes) const {
    EXPECT_EQ(send(fAccepted.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(bytes.size()));
  }
  bool ends(std::size_t outcomes) {
    return fLoop.runUntil([&] { return fOutcomes.size() == outcomes; });
  }

  testing::LoopRunner fLoop;
  testing::TemporaryFolder fFolder;
  std::string fPath = fFolder / "socket";
  FileDescriptor fListening{socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)};
  FileDescriptor fAccepted;
  Compositor fCompositor{fLoop.get(), fPath, 400ms};
  std::vector<std::string> fOutcomes;
};

TEST_F(CompositorTest, SendsTheCommandAndTakesTheAnswer) {
  tell("kill");
  EXPECT_EQ(accept(), compositorCommand("kill"));
  say(answer(R"([{"success":true}])"));
  ASSERT_TRUE(ends(1));
  EXPECT_EQ(fOutcomes[0], "done");
}

TEST_F(CompositorTest, AnswerMayComeInPieces) {
  tell("kill");
  accept();
  const std::string whole = answer(R"([{"success":false,"error":"no"}])");
  for (const char byte : whole) {
    EXPECT_TRUE(fOutcomes.empty());
    say({&byte, 1});
    sd_event_run(fLoop.get(), 20'000);
  }
  ASSERT_TRUE(ends(1));
  EXPECT_EQ(fOutcomes[0], "no");
}

TEST_F(CompositorTest, OneCommandFollowsTheOther) {
  tell("one");
  tell("two");
  EXPECT_EQ(accept(), compositorCommand("one"));
  EXPECT_LT(accept4(fListening.get(), nullptr, nullptr, SOCK_CLOEXEC), 0);
  say(answer(R"([{"success":true}])"));
  ASSERT_TRUE(ends(1));
  EXPECT_EQ(accept(), compositorCommand("two"));
  say(answer(R"([{"success":true}])"));
  ASSERT_TRUE(ends(2));
}

TEST_F(CompositorTest, CompositorThatIsSilentFailsAllThatWait) {
  tell("one");
  tell("two");
  ASSERT_TRUE(ends(2));
  EXPECT_THAT(fOutcomes, Each("the compositor does not answer"));
  tell("three");
  accept();
  accept();
}

TEST_F(CompositorTest, ConnectionThatIsClosedIsAnError) {
  tell("kill");
  accept();
  fAccepted.reset();
  ASSERT_TRUE(ends(1));
  EXPECT_EQ(fOutcomes[0], "the compositor closed the connection");
}

TEST_F(CompositorTest, NonsenseIsAnError) {
  for (const std::string& nonsense :
       {std::string(100, 'x'), answer("[]"), answer(R"([{"success":true}])") + "x"}) {
    fOutcomes.clear();
    tell("kill");
    accept();
    say(nonsense);
    ASSERT_TRUE(ends(1));
    EXPECT_NE(fOutcomes[0], "done");
  }
}

TEST_F(CompositorTest, WithoutASocketEveryCommandFailsAtOnce) {
  Compositor none(fLoop.get(), "", 400ms);
  EXPECT_EQ(wordOf(fLoop.run([&](Ended ended) { none.tell("kill", std::move(ended)); })),
            "the compositor has no socket for commands");
  Compositor gone(fLoop.get(), fFolder / "gone", 400ms);
  EXPECT_THAT(wordOf(fLoop.run([&](Ended ended) { gone.tell("kill", std::move(ended)); })),
              HasSubstr("No such file"));
  Compositor longName(fLoop.get(), std::string(300, 'x'), 400ms);
  EXPECT_NE(wordOf(fLoop.run([&](Ended ended) { longName.tell("kill", std::move(ended)); })), "done");
}

TEST_F(CompositorTest, MoreThanAHandCanAskForIsRefused) {
  for (int i = 0; i < 20; ++i) {
    tell("kill");
  }
  EXPECT_EQ(fOutcomes.size(), 4U);
  EXPECT_THAT(fOutcomes, Each("too much is asked of the compositor at once"));
}

}  // namespace
}  // namespace veltrix
