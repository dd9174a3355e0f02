#include "platform/os_release.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>
#include <limits>

#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

TEST(OsRelease, MissingPartsAreZero) {
  EXPECT_EQ(parseOsRelease("VERSION_ID=\"12\"\n"), (OsRelease{12, 0, 0}));
  EXPECT_EQ(parseOsRelease("VERSION_ID=\"22.04\"\n"), (OsRelease{22, 4, 0}));
  EXPECT_EQ(parseOsRelease("VERSION_ID=15.5.3\n"), (OsRelease{15, 5, 3}));
  EXPECT_EQ(parseOsRelease("VERSION_ID=1.2.3.4\n"), (OsRelease{1, 2, 3}));
}

TEST(OsRelease, IsFoundAmongOtherKeys) {
  EXPECT_EQ(parseOsRelease("NAME=\"Debian GNU/Linux\"\nMY_VERSION_ID=7\n#VERSION_ID=8\nVERSION_ID=\"12\"\n"
                           "VERSION=\"13 (x)\"\n"),
            (OsRelease{12, 0, 0}));
}

TEST(OsRelease, IsQuotedAsAShellQuotes) {
  EXPECT_EQ(parseOsRelease("VERSION_ID='12.5'"), (OsRelease{12, 5, 0}));
  EXPECT_EQ(parseOsRelease("VERSION_ID=1\"2.\"5"), (OsRelease{12, 5, 0}));
  EXPECT_EQ(parseOsRelease("VERSION_ID=\"1\\2.5\""), (OsRelease{12, 5, 0}));
  EXPECT_EQ(parseOsRelease("  VERSION_ID=\"12\"\r\n"), (OsRelease{12, 0, 0}));
  EXPECT_EQ(parseOsRelease("VERSION_ID=\"12"), (OsRelease{12, 0, 0}));
}

TEST(OsRelease, LastOfTwoCounts) {
  EXPECT_EQ(parseOsRelease("VERSION_ID=1\nVERSION_ID=2\n"), (OsRelease{2, 0, 0}));
}

TEST(OsRelease, PartsEndWithTheirDigits) {
  EXPECT_EQ(parseOsRelease("VERSION_ID=12beta.5"), (OsRelease{12, 0, 0}));
  EXPECT_EQ(parseOsRelease("VERSION_ID=12.5-rc1"), (OsRelease{12, 5, 0}));
  EXPECT_EQ(parseOsRelease("VERSION_ID=..3"), (OsRelease{0, 0, 3}));
  EXPECT_EQ(parseOsRelease("VERSION_ID=-3"), (OsRelease{0, 0, 0}));
}

TEST(OsRelease, PartsTooLargeAreTheLargestNumber) {
  EXPECT_EQ(parseOsRelease("VERSION_ID=99999999999.2147483647.2147483648"),
            (OsRelease{kLargest, kLargest, kLargest}));
}

TEST(OsRelease, BytesThatTellNothingAreZero) {
  EXPECT_EQ(parseOsRelease(""), OsRelease());
  EXPECT_EQ(parseOsRelease("VERSION_ID"), OsRelease());
  EXPECT_EQ(parseOsRelease("VERSION_ID=\n"), OsRelease());
  EXPECT_EQ(parseOsRelease("VERSION_ID=sid\\"), OsRelease());
}

RC_GTEST_PROP(OsRelease, EveryReleaseIsReadBack, ()) {
  const auto part = [] { return *rc::gen::inRange(0, kLargest); };
  const OsRelease release = {part(), part(), part()};
  RC_ASSERT(parseOsRelease("VERSION_ID=\"" + std::to_string(release.major) + "." +
                           std::to_string(release.minor) + "." + std::to_string(release.bugFix) + "\"\n") ==
            release);
}

TEST(OsRelease, FirstFileThatCanBeReadCounts) {
  const testing::TemporaryFolder folder;
  testing::writeFile(folder / "second", "VERSION_ID=2\n");
  testing::writeFile(folder / "third", "VERSION_ID=3\n");
  EXPECT_EQ(readOsRelease({folder / "first", folder / "second", folder / "third"}), (OsRelease{2, 0, 0}));
  EXPECT_EQ(readOsRelease({folder.path(), folder / "third"}), (OsRelease{3, 0, 0}));
  EXPECT_EQ(readOsRelease({folder / "first"}), OsRelease());
}

TEST(OsRelease, ThisSystemHasOne) {
  EXPECT_GT(readOsRelease().major, 0);
}

}  // namespace
}  // namespace veltrix
