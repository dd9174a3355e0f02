#include "helper/desktop/media_player.h"

#include <gmock/gmock.h>
#include <systemd/sd-bus.h>

#include "helper/commands/command_table.h"
#include "tests/helper/desktop/fake_service.h"
#include "tests/helper/desktop/loop_runner.h"
#include "tests/support/private_bus.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::wordOf;
using namespace std::chrono_literals;

constexpr const char* kNoPlayer = "no media player runs";

class Player : public testing::FakeService {
 public:
  Player(sd_event* loop, const std::string& address, const char* name, const char* status)
      : FakeService(loop, address, (std::string("org.mpris.MediaPlayer2.") + name).c_str()) {
    setText("PlaybackStatus", status);
    setBoolean("CanSeek", true);
  }
};

class MediaPlayersTest : public ::testing::Test {
 protected:
  MediaPlayersTest() {
    auto bus = openSessionBus(fBus.address(), std::chrono::steady_clock::now() + 10s);
    EXPECT_TRUE(bus);
    fConnection = std::move(bus.value());
    sd_bus_attach_event(fConnection.get(), fLoop.get(), SD_EVENT_PRIORITY_NORMAL);
  }

  std::string control(MediaPlayers& players, const PlayerAttempt& attempt) const {
    return wordOf(fLoop.run([&](Ended ended) { players.control(attempt, std::move(ended)); }));
  }
  // Lets everything arrive that was sent before: the bus has read it by its second answer.
  void settle() const {
    askTheBus();
    askTheBus();
  }
  void askTheBus() const {
    bool answered = false;
    sd_bus_call_method_async(
        fConnection.get(), nullptr, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "GetId",
        [](sd_bus_message* /*reply*/, void* flag, sd_bus_error* /*error*/) {
          *static_cast<bool*>(flag) = true;
          return 0;
        },
        &answered, "");
    EXPECT_TRUE(fLoop.runUntil([&] { return answered; }));
  }

  testing::LoopRunner fLoop;
  testing::PrivateBus fBus;
  BusHandle fConnection;
};

TEST_F(MediaPlayersTest, WithoutAPlayerThereIsAnErrorSoThatTheKeyFollows) {
  MediaPlayers players(fLoop.get(), fConnection.get(), 500ms);
  EXPECT_EQ(control(players, {"PlayPause"}), kNoPlayer);
}

TEST_F(MediaPlayersTest, EveryCommandOfTheTableReachesThePlayer) {
  Player one(fLoop.get(), fBus.address(), "one", "Playing");
  MediaPlayers players(fLoop.get(), fConnection.get(), 500ms);
  for (std::uint16_t code = 140; code <= 145; ++code) {
    EXPECT_EQ(control(players, std::get<PlayerAttempt>(rowsOfCommand(code)[0].attempt)), "done");
  }
  const std::string player = "/org/mpris/MediaPlayer2 org.mpris.MediaPlayer2.Player.";
  EXPECT_THAT(one.calls(),
              ElementsAre(player + "PlayPause()", player + "Stop()", player + "Next()", player + "Previous()",
                          player + "Seek(10000000)", player + "Seek(-10000000)"));
}

TEST_F(MediaPlayersTest, PlayingOneComesFirst) {
  Player paused(fLoop.get(), fBus.address(), "a", "Paused");
  Player playing(fLoop.get(), fBus.address(), "b", "Playing");
  MediaPlayers players(fLoop.get(), fConnection.get(), 500ms);
  EXPECT_EQ(control(players, {"Next"}), "done");
  EXPECT_THAT(paused.calls(), IsEmpty());
  EXPECT_EQ(playing.calls().size(), 1U);
}

TEST_F(MediaPlayersTest, PausedOneThatPlayedLastIsContinued) {
  Player one(fLoop.get(), fBus.address(), "a", "Paused");
  Player two(fLoop.get(), fBus.address(), "b", "Playing");
  MediaPlayers players(fLoop.get(), fConnection.get(), 500ms);
  EXPECT_EQ(control(players, {"PlayPause"}), "done");
  two.changeText("PlaybackStatus", "Paused");
  settle();
  EXPECT_EQ(control(players, {"PlayPause"}), "done");
  EXPECT_EQ(two.calls().size(), 2U);
  EXPECT_THAT(one.calls(), IsEmpty());
}

TEST_F(MediaPlayersTest, PlayerThatComesLaterIsKnownAndOneThatGoesIsForgotten) {
  MediaPlayers players(fLoop.get(), fConnection.get(), 500ms);
  EXPECT_EQ(control(players, {"Next"}), kNoPlayer);
  {
    Player late(fLoop.get(), fBus.address(), "late", "Playing");
    EXPECT_TRUE(fLoop.runUntil([&] { return control(players, {"Next"}) == "done"; }));
  }
  EXPECT_TRUE(fLoop.runUntil([&] { return control(players, {"Next"}) == kNoPlayer; }));
}

TEST_F(MediaPlayersTest, OneThatCannotSeekIsNotAskedTo) {
  Player radio(fLoop.get(), fBus.address(), "radio", "Playing");
  radio.setBoolean("CanSeek", false);
  MediaPlayers players(fLoop.get(), fConnection.get(), 500ms);
  EXPECT_EQ(control(players, {"Seek", 10'000'000}), "the media player cannot seek");
  EXPECT_THAT(radio.calls(), IsEmpty());
}

TEST_F(MediaPlayersTest, RefusalOfThePlayerIsSaid) {
  Player one(fLoop.get(), fBus.address(), "one", "Playing");
  one.refuse("org.example.Error", "nothing is queued");
  MediaPlayers players(fLoop.get(), fConnection.get(), 500ms);
  EXPECT_EQ(control(players, {"Next"}), "media player: nothing is queued");
}

TEST_F(MediaPlayersTest, HungPlayerEndsAtTheTimeOut) {
  Player one(fLoop.get(), fBus.address(), "one", "Playing");
  MediaPlayers players(fLoop.get(), fConnection.get(), 300ms);
  EXPECT_EQ(control(players, {"Next"}), "done");
  one.answerNothing();
  EXPECT_EQ(control(players, {"Next"}), "media player: no answer");
}

}  // namespace
}  // namespace veltrix
