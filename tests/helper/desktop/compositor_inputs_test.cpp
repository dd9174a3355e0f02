#include "helper/desktop/compositor_inputs.h"

#include <gmock/gmock.h>

#include "helper/desktop/compositor_wire.h"

namespace veltrix {
namespace {

std::vector<std::string> keyboardsIn(std::string_view body) {
  const auto keyboards = compositorKeyboards(body);
  if (!keyboards) {
    return {"error"};
  }
  std::vector<std::string> found;
  for (const auto& keyboard : keyboards.value()) {
    found.push_back(keyboard.identifier + " = " + keyboard.name + ' ' + std::to_string(keyboard.group));
  }
  return found;
}

TEST(CompositorInputs, KeyboardsAreListedInTheirOrder) {
  EXPECT_THAT(keyboardsIn(R"([
      {"identifier":"1:2:b","name":"b","type":"keyboard","xkb_active_layout_index":1,"vendor":1},
      {"identifier":"1:1:p","name":"p","type":"pointer","xkb_active_layout_index":1},
      {"identifier":"1:3:a","name":"a","type":"keyboard","xkb_active_layout_index":0}])"),
              ::testing::ElementsAre("1:2:b = b 1", "1:3:a = a 0"));
  EXPECT_THAT(keyboardsIn("[]"), ::testing::IsEmpty());
}

TEST(CompositorInputs, KeyboardWithoutAGroupOrAnIdentityIsLeftOut) {
  for (const char* group : {"null", "-1", "4294967296", "1.5", "\"1\"", "[1]"}) {
    const std::string input =
        R"([{"identifier":"i","name":"n","type":"keyboard","xkb_active_layout_index":)" + std::string(group) +
        "}]";
    EXPECT_THAT(keyboardsIn(input), ::testing::IsEmpty()) << group;
  }
  EXPECT_THAT(keyboardsIn(R"([{"identifier":"i","name":"n","type":"keyboard"}, 7, null, [],
      {"name":"n","type":"keyboard","xkb_active_layout_index":1},
      {"identifier":"i","name":8,"type":"keyboard","xkb_active_layout_index":1}])"),
              ::testing::IsEmpty());
}

TEST(CompositorInputs, WhatIsNoListIsAnError) {
  for (const char* text : {"", "{}", "7", "[", "[]x", "\xFF", "[\"\xFF\"]"}) {
    EXPECT_THAT(keyboardsIn(text), ::testing::ElementsAre("error")) << text;
  }
  EXPECT_FALSE(compositorKeyboards(std::string(kLongestCompositorAnswer, '[')));
}

TEST(CompositorInputs, EventTellsTheChangeAndTheKeyboard) {
  const auto event = compositorInputChange(R"({"change":"xkb_layout","input":
      {"identifier":"i","name":"n","type":"keyboard","xkb_active_layout_index":2}})");
  ASSERT_TRUE(event);
  EXPECT_EQ(event.value().change, "xkb_layout");
  ASSERT_TRUE(event.value().keyboard);
  EXPECT_EQ(event.value().keyboard->identifier, "i");
  EXPECT_EQ(event.value().keyboard->group, 2U);
}

TEST(CompositorInputs, EventMayBeAboutSomethingElse) {
  const auto event = compositorInputChange(R"({"change":"removed","input":{"type":"pointer"}})");
  ASSERT_TRUE(event);
  EXPECT_FALSE(event.value().keyboard);
  EXPECT_TRUE(compositorInputChange(R"({"change":"added"})"));
  for (const char* text : {"", "[]", "{}", R"({"change":7})", R"({"change":"added")"}) {
    EXPECT_FALSE(compositorInputChange(text)) << text;
  }
}

TEST(CompositorInputs, OnlyAClearYesIsASubscription) {
  EXPECT_TRUE(compositorSubscribed(R"({"success": true})"));
  for (const char* text : {"", "[]", "{}", R"({"success": false})", R"({"success": 1})", "true"}) {
    EXPECT_FALSE(compositorSubscribed(text)) << text;
  }
}

}  // namespace
}  // namespace veltrix
