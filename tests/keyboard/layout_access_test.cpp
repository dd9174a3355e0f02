#include "keyboard/layout_access.h"

#include <gtest/gtest.h>

#include "settings/modifier_mask.h"
#include "tests/support/scoped_layout.h"

namespace veltrix {
namespace {

using testing::ScopedLayout;

TEST(LayoutAccess, RefusesMissingArguments) {
  const KeyboardLayout* layout = nullptr;
  const void* legacyLayout = nullptr;
  EXPECT_EQ(CompatibleGetKeyboardLayout(nullptr, &legacyLayout), -50);
  EXPECT_EQ(CompatibleGetKeyboardLayout(&layout, nullptr), -50);
}

TEST(LayoutAccess, WithoutALayoutBothAreNull) {
  const ScopedLayout none;
  const int something = 0;
  const KeyboardLayout* layout = nullptr;
  const void* legacyLayout = &something;
  EXPECT_EQ(CompatibleGetKeyboardLayout(&layout, &legacyLayout), -192);
  EXPECT_EQ(layout, nullptr);
  EXPECT_EQ(legacyLayout, nullptr);
}

TEST(LayoutAccess, GivesTheLayoutInEffect) {
  const ScopedLayout german("de");
  const int something = 0;
  const KeyboardLayout* layout = nullptr;
  const void* legacyLayout = &something;
  EXPECT_EQ(CompatibleGetKeyboardLayout(&layout, &legacyLayout), 0);
  EXPECT_EQ(layout, &german.layout());
  EXPECT_EQ(legacyLayout, nullptr);
}

TEST(LayoutAccess, WithoutASourceTheDesktopIsAsked) {
  setKeyboardLayoutSource({});
  const KeyboardLayout* layout = nullptr;
  const void* legacyLayout = nullptr;
  EXPECT_EQ(CompatibleGetKeyboardLayout(&layout, &legacyLayout), 0);
  EXPECT_NE(layout, nullptr);
}

TEST(LayoutAccess, TranslatesToMacRoman) {
  const ScopedLayout german("de");
  EXPECT_EQ(CompatibleKeyTranslate(0, 0, &german.layout(), nullptr, nullptr), 'a');
  EXPECT_EQ(CompatibleKeyTranslate(0, kShiftModifier, &german.layout(), nullptr, nullptr), 'A');
  EXPECT_EQ(CompatibleKeyTranslate(39, 0, &german.layout(), nullptr, nullptr), 0x8A);                // ä
  EXPECT_EQ(CompatibleKeyTranslate(14, kOptionModifier, &german.layout(), nullptr, nullptr), 0xDB);  // €
}

TEST(LayoutAccess, WhatMacRomanDoesNotHaveIsAQuestionMark) {
  const ScopedLayout russian("ru");
  EXPECT_EQ(CompatibleKeyTranslate(0, 0, &russian.layout(), nullptr, nullptr), '?');
}

TEST(LayoutAccess, FailuresGiveNoCharacter) {
  const ScopedLayout american("us");
  EXPECT_EQ(CompatibleKeyTranslate(0, 0, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(CompatibleKeyTranslate(66, 0, &american.layout(), nullptr, nullptr), 0);  // no such key
  EXPECT_EQ(CompatibleKeyTranslate(63, 0, &american.layout(), nullptr, nullptr), 0);  // types nothing
  EXPECT_EQ(CompatibleKeyTranslate(255, 0, &american.layout(), nullptr, nullptr), 0);
}

TEST(LayoutAccess, ADeadKeyWaitsForTheNextOne) {
  const ScopedLayout french("fr");
  std::uint32_t state = 0;
  EXPECT_EQ(CompatibleKeyTranslate(33, 0, &french.layout(), nullptr, &state), 0);
  EXPECT_NE(state, 0U);
  EXPECT_EQ(CompatibleKeyTranslate(34, 0, &french.layout(), nullptr, &state), 0x94);  // î
  EXPECT_EQ(state, 0U);
  EXPECT_EQ(CompatibleKeyTranslate(34, 0, &french.layout(), nullptr, &state), 'i');
}

TEST(LayoutAccess, WithoutAStateEveryKeyIsOnItsOwn) {
  const ScopedLayout french("fr");
  EXPECT_EQ(CompatibleKeyTranslate(33, 0, &french.layout(), nullptr, nullptr), 0);
  EXPECT_EQ(CompatibleKeyTranslate(34, 0, &french.layout(), nullptr, nullptr), 'i');
}

}  // namespace
}  // namespace veltrix
