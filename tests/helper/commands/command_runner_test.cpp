#include "helper/commands/command_runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <string>
#include <utility>

#include "driverlink/packet_rules.h"
#include "tests/support/fake_session.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using testing::FakeSession;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr SessionKind kBareX11{kOnOther, DisplayKind::kX11};
constexpr KeyStroke kCopy{kHoldControl, 'c'};
constexpr KeyStroke kAltF4{kHoldAlt, 0xFFC1};

constexpr CommandRow kRows[] = {
    {35, kOnEvery, DisplayKind::kAny, kCopy},
    {74, kOnEvery, DisplayKind::kX11, DisplayAttempt{DisplayOperation::kClose}},
    {74, kOnEvery, DisplayKind::kAny, CompositorAttempt{"kill"}},
    {74, kOnEvery, DisplayKind::kAny, kAltF4},
    {91, kOnGnome, DisplayKind::kAny, DisplayAttempt{DisplayOperation::kNextWorkspace}},
    {95, kOnEvery, DisplayKind::kAny, KeySeries{{kCopy, kAltF4}}},
    {102, kOnEvery, DisplayKind::kAny, ShortcutAttempt{"schema", "desktop"}},
    {140, kOnEvery, DisplayKind::kAny, PlayerAttempt{"PlayPause"}},
    {180, kOnEvery, DisplayKind::kAny, SnippetAttempt{1}},
    {160, kOnEvery, DisplayKind::kAny, BusAttempt{BusAttempt::Bus::kSystem, "s", "/p", "i", "Lock", {}}},
    {155, kOnEvery, DisplayKind::kAny, ProgramAttempt{{"shoot"}}},
    {202, kOnEvery, DisplayKind::kAny, SettingAttempt{"schema", "reader"}},
    {190, kOnEvery, DisplayKind::kAny, PlaceAttempt{Place::kBrowser}},
    {70, kOnEvery, DisplayKind::kAny, ChosenAttempt{ChosenThing::kItem}},
    {71, kOnEvery, DisplayKind::kAny, ChosenAttempt{ChosenThing::kApplication}},
    {72, kOnEvery, DisplayKind::kAny, ChosenAttempt{ChosenThing::kUrl}},
    {73, kOnEvery, DisplayKind::kAny, ChosenAttempt{ChosenThing::kScript}},
};

std::span<const CommandRow> rowsOf(std::uint16_t command) {
  const CommandRow* first = std::begin(kRows);
  while (first != std::end(kRows) && first->command != command) ++first;
  const CommandRow* end = first;
  while (end != std::end(kRows) && end->command == command) ++end;
  return {first, end};
}

class FixedSettings final : public CommandSettings {
 public:
  CommandAction actionOf(const DeviceAddress& /*device*/, std::uint16_t slot) const override {
    const auto found = actions.find(slot);
    return found == actions.end() ? CommandAction{} : found->second;
  }
  std::string snippet(std::uint8_t number) const override { return "text " + std::to_string(number); }

  std::map<std::uint16_t, CommandAction> actions;
};

using Problem = std::pair<std::uint16_t, std::string>;

class CommandRunnerTest : public ::testing::Test {
 protected:
  // Button 2 of trackball 1 has that command.
  void give(std::uint16_t command, std::uint16_t slot = 2) {
    settings.actions[slot] = {command, "some text", "some.id"};
  }
  void press(std::uint16_t slot = 2, bool pressed = true) {
    auto packet = makePacket<ButtonPacket>();
    packet.number = 1;
    packet.slot = slot;
    packet.command = settings.actions[slot].command;
    packet.pressed = pressed ? 1 : 0;
    packet.forHelper = 1;
    runner->take(packet);
  }
  void release(std::uint16_t slot = 2) { press(slot, false); }
  // What a press of a button with that command does.
  std::vector<std::string> deedsOf(std::uint16_t command) {
    give(command);
    press();
    auto deeds = session.taken();
    deeds.erase(std::remove(deeds.begin(), deeds.end(), "release 1/2"), deeds.end());
    return deeds;
  }
  void start(SessionKind kind = kBareX11) {
    runner = std::make_unique<CommandRunner>(
        kind, session.parts(), settings,
        [this](const CommandProblem& it) {
          problems.push_back({it.command, it.reason}), phrase = it.phrase;
        },
        rowsOf);
  }
  void SetUp() override { start(); }

  FakeSession session;
  FixedSettings settings;
  std::vector<Problem> problems;
  Phrase phrase;  // of the last one
  std::unique_ptr<CommandRunner> runner;
};

TEST_F(CommandRunnerTest, AKeyIsHeldWithTheButton) {
  EXPECT_THAT(deedsOf(35), ElementsAre("hold 1/2 2+99"));
  release();
  EXPECT_THAT(session.taken(), ElementsAre("release 1/2"));
  EXPECT_THAT(problems, IsEmpty());
}

TEST_F(CommandRunnerTest, EveryKindOfAttemptReachesItsPartOfTheSession) {
  EXPECT_THAT(deedsOf(74), ElementsAre("operate 0"));
  EXPECT_THAT(deedsOf(95), ElementsAre("series 1/2 2+99 4+65473 0+0 0+0"));
  EXPECT_THAT(deedsOf(140), ElementsAre("player PlayPause"));
  EXPECT_THAT(deedsOf(160), ElementsAre("call Lock"));
  EXPECT_THAT(deedsOf(155), ElementsAre("start shoot"));
  EXPECT_THAT(deedsOf(202), ElementsAre("change reader"));
  EXPECT_THAT(deedsOf(190), ElementsAre("open 0"));
  EXPECT_THAT(deedsOf(70), ElementsAre("item some text"));
  EXPECT_THAT(deedsOf(71), ElementsAre("launch some.id|some text"));
  EXPECT_THAT(deedsOf(72), ElementsAre("url some text"));
  EXPECT_THAT(deedsOf(73), ElementsAre("script some text"));
  EXPECT_THAT(deedsOf(180), ElementsAre("type 1/2 text 1"));
  EXPECT_THAT(problems, IsEmpty());
}

TEST_F(CommandRunnerTest, TheNextAttemptIsMadeWhenOneFails) {
  session.failures["operate"] = "no window is active";
  EXPECT_THAT(deedsOf(74), ElementsAre("operate 0", "compositor kill"));
  EXPECT_THAT(problems, IsEmpty());
}

TEST_F(CommandRunnerTest, AfterTheLastOneTheFirstReasonThatIsNotOfKeysIsTold) {
  session.failures = {{"operate", "no window is active"}, {"compositor", "none"}, {"hold", "no such key"}};
  EXPECT_THAT(deedsOf(74), ElementsAre("operate 0", "compositor kill", "hold 1/2 4+65473"));
  EXPECT_THAT(problems, ElementsAre(Problem{74, "no window is active"}));
}

TEST_F(CommandRunnerTest, TheReasonIsToldForOtherLanguagesToo) {
  deedsOf(91);
  ASSERT_THAT(problems, SizeIs(1));
  EXPECT_EQ(phrase.text, problems[0].second);
  const auto problem = problemOf(70, phrasedError(ENOENT, {"cannot open %1", {given("/a\nb")}}));
  EXPECT_EQ(problem.reason, "cannot open /a?b");
  EXPECT_EQ(problem.phrase.text, "cannot open %1");
  EXPECT_EQ(problemOf(70, Error{}).reason, "it failed");
}

TEST_F(CommandRunnerTest, KeysAloneTellTheirOwnReason) {
  session.failures["hold"] = "no such key";
  deedsOf(35);
  EXPECT_THAT(problems, ElementsAre(Problem{35, "no such key"}));
}

TEST_F(CommandRunnerTest, AReleaseBeforeTheFallbackMakesItATap) {
  session.holds = true;
  give(74);
  press();
  release();
  session.taken();
  session.endNext(Error{0, "no", std::nullopt});
  session.endNext(Error{0, "no", std::nullopt});
  EXPECT_THAT(session.taken(), ElementsAre("compositor kill", "hold 1/2 4+65473", "release 1/2"));
}

TEST_F(CommandRunnerTest, AFallbackInTimeIsHeldUntilTheRelease) {
  session.holds = true;
  give(74);
  press();
  session.endNext(Error{0, "no", std::nullopt});
  session.endNext(Error{0, "no", std::nullopt});
  session.taken();
  release();
  EXPECT_THAT(session.taken(), ElementsAre("release 1/2"));
}

TEST_F(CommandRunnerTest, KeysOfASettingAreHeldWithTheButton) {
  EXPECT_THAT(deedsOf(102), ElementsAre("shortcut desktop", "hold 1/2 2+99"));
  release();
  EXPECT_THAT(session.taken(), ElementsAre("release 1/2"));
}

TEST_F(CommandRunnerTest, AReleaseBeforeTheSettingIsReadMakesItATap) {
  session.holds = true;
  EXPECT_THAT(deedsOf(102), ElementsAre("shortcut desktop"));
  release();
  session.taken();
  session.endNext();
  EXPECT_THAT(session.taken(), ElementsAre("hold 1/2 2+99", "release 1/2"));
}

TEST_F(CommandRunnerTest, WithoutKeysInTheSettingNothingIsHeld) {
  session.failures["shortcut"] = "none";
  EXPECT_THAT(deedsOf(102), ElementsAre("shortcut desktop"));
  EXPECT_THAT(problems, ElementsAre(Problem{102, "none"}));
}

TEST_F(CommandRunnerTest, APressOfTheButtonThatTypesStopsIt) {
  give(180);
  session.isTyping = ButtonId{1, 2};
  press();
  EXPECT_THAT(session.taken(), ElementsAre("stop 1/2"));
}

TEST_F(CommandRunnerTest, APressOfAnotherButtonWhileOneTypesGoesItsWay) {
  give(35);
  session.isTyping = ButtonId{1, 3};
  press();
  EXPECT_THAT(session.taken(), ElementsAre("release 1/2", "hold 1/2 2+99"));
}

TEST_F(CommandRunnerTest, WithoutARowForThisDesktopItSaysSo) {
  EXPECT_THAT(deedsOf(91), IsEmpty());
  EXPECT_THAT(problems, ElementsAre(Problem{91, "it is not possible on this desktop"}));
  start({kOnGnome, DisplayKind::kX11});
  EXPECT_THAT(deedsOf(91), ElementsAre("operate 5"));
}

TEST_F(CommandRunnerTest, OnlyAttemptsForThisSessionAreMade) {
  start({kOnOther, DisplayKind::kWayland});
  EXPECT_THAT(deedsOf(74), ElementsAre("compositor kill"));
}

TEST_F(CommandRunnerTest, CodesThatAreNotListedDoNothing) {
  EXPECT_THAT(deedsOf(9), IsEmpty());
  EXPECT_THAT(deedsOf(200), IsEmpty());
  EXPECT_THAT(problems, IsEmpty());
}

TEST_F(CommandRunnerTest, ButtonsOfTheDriverArePassedOver) {
  give(35);
  auto packet = makePacket<ButtonPacket>();
  packet.number = 1;
  packet.slot = 2;
  packet.command = 35;
  packet.pressed = 1;
  runner->take(packet);
  EXPECT_THAT(session.taken(), IsEmpty());
}

TEST_F(CommandRunnerTest, APressBySettingsOfYesterdayDoesNothing) {
  give(72);
  auto packet = makePacket<ButtonPacket>();
  packet.number = 1;
  packet.slot = 2;
  packet.command = 73;
  packet.pressed = 1;
  packet.forHelper = 1;
  runner->take(packet);
  EXPECT_THAT(session.taken(), ElementsAre("release 1/2"));
  EXPECT_THAT(problems, IsEmpty());
}

TEST_F(CommandRunnerTest, WhatNeverEndsDelaysNothingAndDoesNotPileUp) {
  session.holds = true;
  give(140);
  give(35, 3);
  for (std::size_t i = 0; i < kMostCommandsUnderWay; ++i) press();
  EXPECT_THAT(problems, IsEmpty());
  press();
  EXPECT_THAT(problems, ElementsAre(Problem{140, "too many commands before it have not ended yet"}));
  EXPECT_THAT(session.waiting, SizeIs(kMostCommandsUnderWay));
  session.endNext();
  session.taken();
  press(3);
  EXPECT_THAT(session.taken(), ElementsAre("release 1/3", "hold 1/3 2+99"));
}

TEST_F(CommandRunnerTest, AnEndThatComesTwiceCountsOnce) {
  session.holds = true;
  give(140);
  press();
  const Ended ended = session.waiting.front();
  ended(Error{0, "no player", std::nullopt});
  ended(Error{0, "no player", std::nullopt});
  EXPECT_THAT(problems, SizeIs(1));
}

TEST_F(CommandRunnerTest, AnEndAfterTheRunnerIsNoHarm) {
  session.holds = true;
  give(140);
  press();
  runner.reset();
  session.endNext(Error{0, "too late", std::nullopt});
  EXPECT_THAT(problems, IsEmpty());
}

TEST_F(CommandRunnerTest, WithoutTheDriverNoFallbackHoldsAKey) {
  session.holds = true;
  give(74);
  press();
  runner->forgetButtons();
  session.taken();
  session.endNext(Error{0, "no", std::nullopt});
  session.endNext(Error{0, "no", std::nullopt});
  EXPECT_THAT(session.taken(), ElementsAre("compositor kill", "hold 1/2 4+65473", "release 1/2"));
}

TEST_F(CommandRunnerTest, AReasonIsOneLineOfTextWhateverItWas) {
  session.failures["url"] = "no\nhandler\x01 for \xFF\xC3 it\x7F";
  deedsOf(72);
  ASSERT_THAT(problems, SizeIs(1));
  EXPECT_EQ(problems[0].second, "no?handler? for ?? it?");
  session.failures["url"] = std::string(5000, 'x') + "\xC3\xA4";
  deedsOf(72);
  EXPECT_LE(problems[1].second.size(), kLongestReason);
  EXPECT_TRUE(problems[1].second.starts_with("xxxxxx"));
  session.failures["url"] = "";
  deedsOf(72);
  EXPECT_EQ(problems[2].second, "it failed");
}

}  // namespace
}  // namespace veltrix
