#include "platform/layout_names.h"

#include <gtest/gtest.h>

#include "tests/support/environment.h"

namespace veltrix {

bool operator==(const LayoutNames& a, const LayoutNames& b) {
  return a.model == b.model && a.layout == b.layout && a.variant == b.variant && a.options == b.options;
}

void PrintTo(const LayoutNames& names, std::ostream* out) {
  *out << names.model << '/' << names.layout << '/' << names.variant << '/' << names.options;
}

namespace {

using testing::ScopedEnvironment;

TEST(LayoutNames, ReadsTheFileThatTheSystemWrites) {
  EXPECT_EQ(readLayoutNames("# KEYBOARD CONFIGURATION FILE\n\n# Consult the manual.\n\nXKBMODEL=\"pc105\"\n"
                            "XKBLAYOUT=\"de,us\"\nXKBVARIANT=\"nodeadkeys,\"\nXKBOPTIONS=\"ctrl:nocaps\"\n\n"
                            "BACKSPACE=\"guess\"\n"),
            (LayoutNames{"pc105", "de,us", "nodeadkeys,", "ctrl:nocaps"}));
}

TEST(LayoutNames, TakesValuesQuotedInEitherWayOrNot) {
  EXPECT_EQ(readLayoutNames("XKBLAYOUT=fr # mine\nXKBVARIANT='oss'"), (LayoutNames{"", "fr", "oss", ""}));
  EXPECT_EQ(readLayoutNames("  XKBLAYOUT=gb\r\n"), (LayoutNames{"", "gb", "", ""}));
}

TEST(LayoutNames, TheLastOfTwoValuesCounts) {
  EXPECT_EQ(readLayoutNames("XKBLAYOUT=fr\nXKBLAYOUT=es\n"), (LayoutNames{"", "es", "", ""}));
}

TEST(LayoutNames, PassesOverWhatIsNoAssignment) {
  EXPECT_EQ(readLayoutNames("export\n=\n#XKBLAYOUT=fr\nXKBLAYOUT=jp\nXKBLAYOUTS=es\n"),
            (LayoutNames{"", "jp", "", ""}));
}

TEST(LayoutNames, ThereAreNoneWithoutALayout) {
  EXPECT_EQ(readLayoutNames(""), std::nullopt);
  EXPECT_EQ(readLayoutNames("XKBMODEL=pc105\nXKBLAYOUT=\"\"\n"), std::nullopt);
  EXPECT_EQ(readLayoutNames("XKBLAYOUT=\"never closed\nXKBMODEL=x\n"), std::nullopt);
}

TEST(LayoutNames, TheEnvironmentNamesALayoutOrNone) {
  const ScopedEnvironment model("XKB_DEFAULT_MODEL", std::nullopt);
  const ScopedEnvironment variant("XKB_DEFAULT_VARIANT", "dvorak");
  const ScopedEnvironment options("XKB_DEFAULT_OPTIONS", std::nullopt);
  {
    const ScopedEnvironment layout("XKB_DEFAULT_LAYOUT", std::nullopt);
    EXPECT_EQ(layoutNamesOfEnvironment(), std::nullopt);
  }
  const ScopedEnvironment layout("XKB_DEFAULT_LAYOUT", "us");
  EXPECT_EQ(layoutNamesOfEnvironment(), (LayoutNames{"", "us", "dvorak", ""}));
}

TEST(LayoutNames, ANameIsALayoutWithOrWithoutAVariant) {
  EXPECT_EQ(parseLayoutName("de"), (LayoutNames{"", "de", "", ""}));
  EXPECT_EQ(parseLayoutName("us:dvorak-intl"), (LayoutNames{"", "us", "dvorak-intl", ""}));
  EXPECT_EQ(parseLayoutName("us(dvorak)"), (LayoutNames{"", "us", "dvorak", ""}));
}

TEST(LayoutNames, ANameHoldsNothingThatLeadsToOtherFiles) {
  for (const char* name : {"", ":", "us:", ":dvorak", "../us", "us/../de", "us(", "us()", "(x)", "-us",
                           "de,us", "d e", "us+de", "us(a)b", "d\xC3\xA9"}) {
    EXPECT_EQ(parseLayoutName(name), std::nullopt) << name;
  }
}

}  // namespace
}  // namespace veltrix
