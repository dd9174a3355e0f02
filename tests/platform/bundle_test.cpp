#include "platform/bundle.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/catalog_bytes.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/thread_locale.h"

namespace veltrix {
namespace {

class BundleTest : public ::testing::Test {
 protected:
  testing::TemporaryFolder fFolder;
};

TEST_F(BundleTest, ResourcesAreFoundByNameAndType) {
  testing::writeFile(fFolder / "DefaultSettings.plist", "");
  testing::writeFile(fFolder / "README", "");
  std::filesystem::create_directory(fFolder / "VeltrixHelper.app");
  const Bundle bundle(fFolder.path());
  EXPECT_EQ(bundle.resourcePath(), fFolder.path());
  EXPECT_EQ(bundle.pathForResource("DefaultSettings", "plist"), fFolder / "DefaultSettings.plist");
  EXPECT_EQ(bundle.pathForResource("VeltrixHelper", "app"), fFolder / "VeltrixHelper.app");
  EXPECT_EQ(bundle.pathForResource("README", ""), fFolder / "README");
}

TEST_F(BundleTest, MissingResourceHasNoPath) {
  const Bundle bundle(fFolder.path());
  EXPECT_EQ(bundle.pathForResource("DefaultSettings", "plist"), "");
  EXPECT_EQ(bundle.pathForResource("", ""), "");
}

TEST_F(BundleTest, InfoValuesComeFromItsPropertyList) {
  testing::writeFile(fFolder / "Info.plist",
                     "<plist version=\"1.0\"><dict><key>CFBundleVersion</key><string>1.2</string>"
                     "<key>Number</key><integer>7</integer></dict></plist>");
  const Bundle bundle(fFolder.path());
  EXPECT_EQ(bundle.infoValue("CFBundleVersion").asString(), "1.2");
  EXPECT_EQ(bundle.infoValue("Number").asInt64(), 7);
  EXPECT_TRUE(bundle.infoValue("Other").isMissing());
}

TEST_F(BundleTest, MissingOrDamagedInfoHasNoValues) {
  EXPECT_TRUE(Bundle(fFolder.path()).infoValue("CFBundleVersion").isMissing());
  testing::writeFile(fFolder / "Info.plist", "<plist><dict><key>CFBundleVersion</key>");
  EXPECT_TRUE(Bundle(fFolder.path()).infoValue("CFBundleVersion").isMissing());
  testing::writeFile(fFolder / "Info.plist", "<plist version=\"1.0\"><array/></plist>");
  EXPECT_TRUE(Bundle(fFolder.path()).infoValue("CFBundleVersion").isMissing());
}

TEST_F(BundleTest, TextsComeFromTheTableOfTheUsersLanguage) {
  testing::writeFile(fFolder / "locale/de/LC_MESSAGES/Localizable.mo",
                     testing::catalogBytes({{"KEY", "deutsch"}}));
  const Bundle bundle(fFolder.path());
  const testing::ThreadLanguage german("de");
  EXPECT_EQ(bundle.localizedString("KEY", "", "Localizable"), "deutsch");
  EXPECT_EQ(bundle.localizedString("KEY", "value", "Localizable"), "deutsch");
}

TEST_F(BundleTest, KeyWithoutATextComesBackAsTheValueOrAsItself) {
  const Bundle bundle(fFolder.path());
  EXPECT_EQ(bundle.localizedString("KEY", "", "Localizable"), "KEY");
  EXPECT_EQ(bundle.localizedString("KEY", "value", "Localizable"), "value");
  EXPECT_EQ(bundle.localizedString("", "", "Localizable"), "");
  EXPECT_EQ(bundle.localizedString("", "value", "Localizable"), "value");
}

TEST(StandardBundle, CarriesTheDeliveredInfoAndTexts) {
  const Bundle bundle = Bundle::standard();
  EXPECT_FALSE(bundle.infoValue("CFBundleVersion").asString().empty());
  EXPECT_NE(bundle.localizedString("SNAP_WARNING_10.9", "", "Localizable"), "SNAP_WARNING_10.9");
}

}  // namespace
}  // namespace veltrix
