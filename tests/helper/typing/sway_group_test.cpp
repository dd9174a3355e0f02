#include "helper/typing/sway_group.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <filesystem>

#include "driver/output_identity.h"
#include "tests/helper/desktop/loop_runner.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

constexpr std::string_view kSubscribed = R"({"success":true})";

std::string keyboard(const std::string& name, int group) {
  return R"({"identifier":"1:2:)" + name + R"(","name":")" + name +
         R"(","type":"keyboard","xkb_active_layout_index":)" + std::to_string(group) + "}";
}

std::string list(const std::vector<std::string>& inputs) {
  std::string text = R"([{"identifier":"1:1:m","name":"m","type":"pointer"})";
  for (const auto& input : inputs) {
    text += "," + input;
  }
  return text + "]";
}

std::string event(const std::string& change, const std::string& input) {
  return R"({"change":")" + change + R"(","input":)" + input + "}";
}

// A socket that the test answers at by hand.
class SwayGroupTest : public ::testing::Test {
 protected:
  SwayGroupTest() { listenAnew(); }

  void listenAnew() {
    fListening.reset(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    fPath.copy(address.sun_path, fPath.size());
    std::filesystem::remove(fPath);
    ASSERT_EQ(bind(fListening.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(fListening.get(), 1), 0);
  }
  void begin() { fGroup = std::make_unique<SwayGroup>(fLoop.get(), fPath); }
  // Whether a connection has been made; it is taken.
  bool accept() {
    fAccepted.reset(accept4(fListening.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    return static_cast<bool>(fAccepted);
  }
  // What has been asked since the last time.
  std::string heard() const {
    char bytes[1024];
    const ssize_t count = recv(fAccepted.get(), bytes, sizeof bytes, 0);
    return count < 0 ? std::string() : std::string(bytes, static_cast<std::size_t>(count));
  }
  void sayBytes(std::string_view bytes) const {
    ASSERT_EQ(send(fAccepted.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(bytes.size()));
  }
  void say(CompositorKind kind, std::string_view body) const { sayBytes(compositorMessage(kind, body)); }
  void beginWith(const std::vector<std::string>& inputs) {
    begin();
    ASSERT_TRUE(accept());
    say(CompositorKind::kSubscription, kSubscribed);
    say(CompositorKind::kInputs, list(inputs));
  }
  bool isHungUp() const {
    char byte = 0;
    return recv(fAccepted.get(), &byte, 1, 0) == 0;
  }

  testing::LoopRunner fLoop;
  testing::TemporaryFolder fFolder;
  std::string fPath = fFolder / "socket";
  FileDescriptor fListening;
  FileDescriptor fAccepted;
  std::unique_ptr<SwayGroup> fGroup;
};

TEST_F(SwayGroupTest, AsksForEventsAndThenForTheInputs) {
  begin();
  ASSERT_TRUE(accept());
  EXPECT_EQ(heard(), compositorMessage(CompositorKind::kSubscription, R"(["input"])") +
                         compositorMessage(CompositorKind::kInputs, ""));
}

TEST_F(SwayGroupTest, GroupIsUnknownUntilItIsTold) {
  begin();
  ASSERT_TRUE(accept());
  EXPECT_EQ(fGroup->group(), std::nullopt);
  say(CompositorKind::kSubscription, kSubscribed);
  EXPECT_EQ(fGroup->group(), std::nullopt);
  say(CompositorKind::kInputs, list({}));
  EXPECT_EQ(fGroup->group(), std::nullopt);
  say(CompositorKind::kInputs, list({keyboard("a", 1)}));
  EXPECT_EQ(fGroup->group(), 1U);  // though the loop has not run
}

TEST_F(SwayGroupTest, DriversKeyboardCountsBeforeAllOthers) {
  EXPECT_STREQ(kTypingKeyboard, kKeyboardName);
  beginWith({keyboard("a", 1), keyboard(kTypingKeyboard, 2)});
  EXPECT_EQ(fGroup->group(), 2U);
  say(CompositorKind::kInputEvent, event("xkb_layout", keyboard("a", 0)));
  EXPECT_EQ(fGroup->group(), 2U);
  say(CompositorKind::kInputEvent, event("xkb_layout", keyboard(kTypingKeyboard, 1)));
  EXPECT_EQ(fGroup->group(), 1U);
}

TEST_F(SwayGroupTest, WithoutItTheKeyboardCountsThatChangedLast) {
  beginWith({keyboard("a", 1), keyboard("b", 0)});
  EXPECT_EQ(fGroup->group(), 1U);
  say(CompositorKind::kInputEvent, event("xkb_layout", keyboard("b", 2)));
  EXPECT_EQ(fGroup->group(), 2U);
  say(CompositorKind::kInputEvent, event("xkb_layout", keyboard("a", 0)));
  EXPECT_EQ(fGroup->group(), 0U);
}

TEST_F(SwayGroupTest, NewKeymapMayComeWithAnotherGroup) {
  beginWith({keyboard("a", 1), keyboard("b", 2)});
  say(CompositorKind::kInputEvent, event("xkb_keymap", keyboard("b", 0)));
  EXPECT_EQ(fGroup->group(), 1U);
  say(CompositorKind::kInputEvent, event("xkb_keymap", keyboard("a", 0)));
  EXPECT_EQ(fGroup->group(), 0U);
}

TEST_F(SwayGroupTest, KeyboardsAreAskedForAgainWhenOneComesOrGoes) {
  beginWith({keyboard("a", 1)});
  ASSERT_EQ(fGroup->group(), 1U);
  heard();
  for (const char* change : {"added", "removed"}) {
    say(CompositorKind::kInputEvent, event(change, keyboard(kTypingKeyboard, 2)));
    fGroup->group();
    EXPECT_EQ(heard(), compositorMessage(CompositorKind::kInputs, "")) << change;
  }
  say(CompositorKind::kInputs, list({keyboard("a", 1), keyboard(kTypingKeyboard, 2)}));
  EXPECT_EQ(fGroup->group(), 2U);
  say(CompositorKind::kInputs, list({keyboard("b", 0)}));
  EXPECT_EQ(fGroup->group(), 0U);
}

TEST_F(SwayGroupTest, EventsThatTellNothingOfAKeyboardChangeNothing) {
  beginWith({keyboard("a", 1)});
  say(CompositorKind::kInputEvent, event("libinput_config", R"({"type":"pointer"})"));
  say(CompositorKind::kInputEvent, event("xkb_layout", keyboard("stranger", 3)));
  say(CompositorKind::kCommand, "what is this");
  EXPECT_EQ(fGroup->group(), 1U);
}

TEST_F(SwayGroupTest, MessagesMayComeInPiecesAndTogether) {
  begin();
  ASSERT_TRUE(accept());
  const std::string all =
      compositorMessage(CompositorKind::kSubscription, kSubscribed) +
      compositorMessage(CompositorKind::kInputs, list({keyboard("a", 1)})) +
      compositorMessage(CompositorKind::kInputEvent, event("xkb_layout", keyboard("a", 2)));
  for (const char byte : all) {
    EXPECT_NE(fGroup->group(), 2U);
    sayBytes({&byte, 1});
  }
  EXPECT_EQ(fGroup->group(), 2U);
  sayBytes(all);
  EXPECT_EQ(fGroup->group(), 2U);
}

TEST_F(SwayGroupTest, NonsenseEndsTheConnection) {
  const std::string kNonsense[] = {
      std::string(100, 'x'), compositorMessage(CompositorKind::kSubscription, R"({"success":false})"),
      compositorMessage(CompositorKind::kInputs, "{}"), compositorMessage(CompositorKind::kInputEvent, "[]")};
  for (const std::string& nonsense : kNonsense) {
    beginWith({keyboard("a", 1)});
    ASSERT_EQ(fGroup->group(), 1U);
    heard();
    sayBytes(nonsense);
    EXPECT_EQ(fGroup->group(), std::nullopt) << nonsense;
    EXPECT_TRUE(isHungUp()) << nonsense;
  }
}

TEST_F(SwayGroupTest, LoopTakesInWhatNobodyAsksFor) {
  beginWith({keyboard("a", 1)});
  heard();
  say(CompositorKind::kInputEvent, event("added", keyboard("b", 0)));
  EXPECT_TRUE(fLoop.runUntil([&] { return heard() == compositorMessage(CompositorKind::kInputs, ""); }));
}

TEST_F(SwayGroupTest, CompositorThatGoesIsFoundAgain) {
  beginWith({keyboard("a", 1)});
  ASSERT_EQ(fGroup->group(), 1U);
  fAccepted.reset();
  EXPECT_TRUE(fLoop.runUntil([&] { return fGroup->group() == std::nullopt; }));
  listenAnew();
  EXPECT_TRUE(fLoop.runUntil([&] {
    fGroup->group();
    return accept();
  }));
  say(CompositorKind::kSubscription, kSubscribed);
  say(CompositorKind::kInputs, list({keyboard("a", 2)}));
  EXPECT_TRUE(fLoop.runUntil([&] { return fGroup->group() == 2U; }));
}

TEST_F(SwayGroupTest, CompositorThatIsNotThereYetIsFoundLater) {
  fListening.reset();
  begin();
  EXPECT_EQ(fGroup->group(), std::nullopt);
  listenAnew();
  EXPECT_TRUE(fLoop.runUntil([&] {
    fGroup->group();
    return accept();
  }));
}

}  // namespace
}  // namespace veltrix
