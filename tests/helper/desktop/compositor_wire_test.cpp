#include "helper/desktop/compositor_wire.h"

#include <gmock/gmock.h>

#include <cstring>

namespace veltrix {
namespace {

using ::testing::HasSubstr;

std::string header(std::uint32_t length, std::uint32_t type) {
  std::string text = "i3-ipc";
  for (const std::uint32_t number : {length, type}) {
    char bytes[4];
    std::memcpy(bytes, &number, sizeof bytes);
    text.append(bytes, sizeof bytes);
  }
  return text;
}

TEST(CompositorWire, CommandHasItsLengthAndKindBeforeIt) {
  EXPECT_EQ(compositorCommand("kill"), header(4, 0) + "kill");
  EXPECT_EQ(compositorCommand("").size(), kCompositorHeader);
}

TEST(CompositorWire, LengthOfAnAnswerIsThatOfItsHeader) {
  EXPECT_EQ(compositorAnswerLength(header(20, 0)).value(), 20U);
  EXPECT_EQ(compositorAnswerLength(header(kLongestCompositorAnswer, 0)).value(), kLongestCompositorAnswer);
}

TEST(CompositorWire, AnythingElseIsNoAnswer) {
  EXPECT_FALSE(compositorAnswerLength(header(kLongestCompositorAnswer + 1, 0)));
  EXPECT_FALSE(compositorAnswerLength(header(0xFFFFFFFF, 0)));
  EXPECT_FALSE(compositorAnswerLength(header(20, 4)));
  EXPECT_FALSE(compositorAnswerLength(header(20, 0).substr(1) + "x"));
  EXPECT_FALSE(compositorAnswerLength(header(20, 0).substr(0, 13)));
}

TEST(CompositorWire, EveryKindOfMessageHasTheSameFrame) {
  EXPECT_EQ(compositorMessage(CompositorKind::kSubscription, "[]"), header(2, 2) + "[]");
  EXPECT_EQ(compositorMessage(CompositorKind::kInputs, ""), header(0, 100));
  const auto head = compositorHead(header(7, 0x80000015));
  ASSERT_TRUE(head);
  EXPECT_EQ(head.value().kind, CompositorKind::kInputEvent);
  EXPECT_EQ(head.value().length, 7U);
  EXPECT_FALSE(compositorHead(header(kLongestCompositorAnswer + 1, 100)));
  EXPECT_FALSE(compositorHead("i3-ipd" + header(7, 100).substr(6)));
}

TEST(CompositorWire, AnswerIsDoneWhenAllItsPartsAre) {
  EXPECT_TRUE(compositorOutcome(R"([{"success": true}])"));
  EXPECT_TRUE(compositorOutcome(R"([{"success":true},{"success":true,"id":7}])"));
}

TEST(CompositorWire, FirstReasonIsSaidInOneLine) {
  const Status refused = compositorOutcome(
      R"([{"success":true},{"success":false,"error":"Unknown\ncommand"},{"success":false,"error":"b"}])");
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().message, "Unknown?command");
  const Status silent = compositorOutcome(R"([{"success":false}])");
  ASSERT_FALSE(silent);
  EXPECT_EQ(silent.error().message, "the compositor refused the command");
}

TEST(CompositorWire, LongReasonIsCut) {
  const Status refused =
      compositorOutcome(R"([{"success":false,"error":")" + std::string(5000, 'x') + R"("}])");
  EXPECT_EQ(refused.error().message, std::string(200, 'x') + "…");
}

TEST(CompositorWire, WhatIsNotAnAnswerIsAnError) {
  for (const char* text : {"", "[]", "{}", "7", "[7]", "[{}]", "[{\"success\":1}]", "[{\"success\":true}",
                           "[{\"success\":true}]x", "\xFF"}) {
    const Status outcome = compositorOutcome(text);
    ASSERT_FALSE(outcome) << text;
    EXPECT_THAT(outcome.error().message, HasSubstr("cannot be read")) << text;
  }
}

TEST(CompositorWire, DepthOfAnAnswerEndsNothing) {
  EXPECT_FALSE(compositorOutcome(std::string(kLongestCompositorAnswer, '[')));
}

}  // namespace
}  // namespace veltrix
