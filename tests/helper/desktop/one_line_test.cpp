#include "helper/desktop/one_line.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>

namespace veltrix {
namespace {

TEST(OneLine, ReadableTextStaysAsItIs) {
  EXPECT_EQ(oneLine("/home/anna/Übung 1.txt"), "/home/anna/Übung 1.txt");
}

TEST(OneLine, WhatBreaksALineOrATerminalIsReplaced) {
  EXPECT_EQ(oneLine("a\nb\rc\x1B[1md\x7F"), "a?b?c?[1md?");
  EXPECT_EQ(oneLine("a\xE2\x80\xA8"
                    "b\xC2\x85"
                    "c\xFF"
                    "d"),
            "a?b?c?d");
}

TEST(OneLine, LongTextIsCutAtAWholeCharacter) {
  std::string text(199, 'a');
  EXPECT_EQ(oneLine(text + "ä"), text + "ä");
  EXPECT_EQ(oneLine(text + "äb"), text + "ä…");
}

RC_GTEST_PROP(OneLineProperty, EveryTextGivesOneShortLine, (const std::string& text)) {
  const std::string line = oneLine(text);
  RC_ASSERT(line.size() <= 210U);
  RC_ASSERT(line.find('\n') == std::string::npos);
}

}  // namespace
}  // namespace veltrix
