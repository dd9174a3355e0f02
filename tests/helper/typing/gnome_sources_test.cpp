#include "helper/typing/gnome_sources.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

// As gsettings lists the keys, which are more than these two.
std::string list(const std::string& sources, const std::string& used) {
  const std::string schema = "org.gnome.desktop.input-sources ";
  return schema + "current uint32 0\n" + schema + "mru-sources " + used + "\n" + schema +
         "per-window false\n" + schema + "sources " + sources + "\n" + schema + "xkb-options @as []\n";
}

TEST(InputSources, AreReadAsGsettingsPrintsThem) {
  EXPECT_THAT(inputSources("[('xkb', 'de+nodeadkeys'), ('ibus', 'anthy')]\n"),
              Optional(ElementsAre(InputSource{"xkb", "de+nodeadkeys"}, InputSource{"ibus", "anthy"})));
  EXPECT_THAT(inputSources("@a(ss) []\n"), Optional(IsEmpty()));
  EXPECT_THAT(inputSources("[]"), Optional(IsEmpty()));
}

TEST(InputSources, NamesMayHaveQuotesAndBackslashes) {
  EXPECT_THAT(inputSources(R"([("it's", 'a\\b\'c')])"),
              Optional(ElementsAre(InputSource{"it's", R"(a\b'c)"})));
}

TEST(InputSources, AnythingElseIsNone) {
  for (const char* text :
       {"", "[", "[(", "[('xkb'", "[('xkb', 'us'", "[('xkb', 'us')", "[('xkb', 'us'),]", "[('xkb' 'us')]",
        "[('xkb', 'us)]", "[('xkb', 'us\\", "['us']", "[('xkb', 'us')] x", "@a(ss)", "true"}) {
    EXPECT_EQ(inputSources(text), std::nullopt) << text;
  }
}

RC_GTEST_PROP(InputSources, NoTextDoesHarm, (const std::string& text)) {
  inputSources(text);
  inputSources("[('" + text);
  groupOfSources(list(text, "[]"));
}

TEST(GroupOfSources, IsThePlaceOfTheOneInUse) {
  const std::string three = "[('xkb', 'us'), ('xkb', 'de'), ('xkb', 'ru')]";
  EXPECT_EQ(groupOfSources(list(three, "[('xkb', 'us'), ('xkb', 'ru'), ('xkb', 'de')]")), 0U);
  EXPECT_EQ(groupOfSources(list(three, "[('xkb', 'de'), ('xkb', 'us'), ('xkb', 'ru')]")), 1U);
  EXPECT_EQ(groupOfSources(list(three, "[('xkb', 'ru'), ('xkb', 'de'), ('xkb', 'us')]")), 2U);
}

TEST(GroupOfSources, AVariantIsAnotherLayout) {
  EXPECT_EQ(groupOfSources(list("[('xkb', 'de'), ('xkb', 'de+neo')]", "[('xkb', 'de+neo')]")), 1U);
}

TEST(GroupOfSources, BeforeAnyUseTheFirstIsOn) {
  EXPECT_EQ(groupOfSources(list("[('xkb', 'us'), ('xkb', 'de')]", "@a(ss) []")), 0U);
}

TEST(GroupOfSources, WhatIsNoLongerASourceIsNotInUse) {
  EXPECT_EQ(
      groupOfSources(list("[('xkb', 'us'), ('xkb', 'de')]", "[('xkb', 'fr'), ('xkb', 'de'), ('xkb', 'us')]")),
      1U);
  EXPECT_EQ(groupOfSources(list("[('xkb', 'us'), ('xkb', 'de')]", "[('xkb', 'fr')]")), 0U);
}

TEST(GroupOfSources, AKeymapHasThreeLayouts) {
  const std::string five = "[('xkb', 'us'), ('xkb', 'de'), ('xkb', 'ru'), ('xkb', 'fr'), ('xkb', 'gr')]";
  EXPECT_EQ(groupOfSources(list(five, "[('xkb', 'ru')]")), 2U);
  EXPECT_EQ(groupOfSources(list(five, "[('xkb', 'fr')]")), 0U);
  EXPECT_EQ(groupOfSources(list(five, "[('xkb', 'gr')]")), 1U);
}

TEST(GroupOfSources, MethodsWriteByTheLayoutBeforeThem) {
  const std::string sources = "[('xkb', 'us'), ('ibus', 'anthy'), ('xkb', 'de')]";
  EXPECT_EQ(groupOfSources(list(sources, "[('xkb', 'de'), ('ibus', 'anthy')]")), 1U);
  EXPECT_EQ(groupOfSources(list(sources, "[('ibus', 'anthy'), ('xkb', 'de'), ('xkb', 'us')]")), 1U);
}

TEST(GroupOfSources, WithoutALayoutThereIsNone) {
  EXPECT_EQ(groupOfSources(""), std::nullopt);
  EXPECT_EQ(groupOfSources(list("@a(ss) []", "[('xkb', 'us')]")), std::nullopt);
  EXPECT_EQ(groupOfSources(list("[('ibus', 'anthy')]", "[('ibus', 'anthy')]")), std::nullopt);
  EXPECT_EQ(groupOfSources("No such schema\n"), std::nullopt);
}

}  // namespace
}  // namespace veltrix
