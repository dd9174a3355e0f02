#include "helper/helper_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/property_list_io.h"
#include "tests/support/settings_documents.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using testing::documentOf;
using testing::entryOf;
using ::testing::HasSubstr;
using testing::TemporaryFolder;
using testing::writeFile;

class HelperSettingsTest : public ::testing::Test {
 protected:
  HelperSettingsTest() { write(fFactory, {entryOf(1, 1), entryOf(2, 2), entryOf(3, 3)}); }

  static void write(const std::string& path, std::initializer_list<plist::Value> entries) {
    writeFile(path, plist::writeXml(documentOf(entries)).value());
  }

  TemporaryFolder fFolder;
  std::string fUser = fFolder / "user.plist";
  std::string fFactory = fFolder / "factory.plist";
  HelperSettings fSettings{fUser, fFactory};
};

TEST_F(HelperSettingsTest, UserFileIsInForceWhenThereIsOne) {
  write(fUser, {entryOf(1, 1)});
  fSettings.reread();
  EXPECT_EQ(fSettings.inForce(), SettingsInForce::kUser);
  EXPECT_EQ(fSettings.entries().count(), 1U);
  EXPECT_EQ(fSettings.error(), "");
}

TEST_F(HelperSettingsTest, FactorySettingsStandInForAMissingFileWithoutAnError) {
  fSettings.reread();
  EXPECT_EQ(fSettings.inForce(), SettingsInForce::kFactory);
  EXPECT_EQ(fSettings.entries().count(), 3U);
  EXPECT_EQ(fSettings.error(), "");
}

TEST_F(HelperSettingsTest, FactorySettingsReturnWhenTheFileIsRemoved) {
  write(fUser, {entryOf(1, 1)});
  fSettings.reread();
  std::filesystem::remove(fUser);
  fSettings.reread();
  EXPECT_EQ(fSettings.inForce(), SettingsInForce::kFactory);
  EXPECT_EQ(fSettings.entries().count(), 3U);
}

TEST_F(HelperSettingsTest, BrokenFileLeavesInForceWhatWasAndIsNamed) {
  write(fUser, {entryOf(1, 1)});
  fSettings.reread();
  writeFile(fUser, "<plist><dict><key>devices</key>");
  fSettings.reread();
  EXPECT_EQ(fSettings.inForce(), SettingsInForce::kUser);
  EXPECT_EQ(fSettings.entries().count(), 1U);
  EXPECT_THAT(fSettings.error(), HasSubstr(fUser));
  EXPECT_THAT(fSettings.error(), HasSubstr("at byte"));
  write(fUser, {entryOf(1, 1), entryOf(2, 2)});
  fSettings.reread();
  EXPECT_EQ(fSettings.entries().count(), 2U);
  EXPECT_EQ(fSettings.error(), "");
}

TEST_F(HelperSettingsTest, BrokenFileAtTheFirstReadingBringsTheFactorySettings) {
  writeFile(fUser, "nonsense {");
  fSettings.reread();
  EXPECT_EQ(fSettings.inForce(), SettingsInForce::kFactory);
  EXPECT_EQ(fSettings.entries().count(), 3U);
  EXPECT_THAT(fSettings.error(), HasSubstr(fUser));
}

TEST_F(HelperSettingsTest, DocumentThatIsNoDictionaryIsUnreadable) {
  writeFile(fUser, plist::writeXml(testing::arrayOf({1, 2})).value());
  fSettings.reread();
  EXPECT_EQ(fSettings.inForce(), SettingsInForce::kFactory);
  EXPECT_THAT(fSettings.error(), HasSubstr("no dictionary"));
}

TEST_F(HelperSettingsTest, DocumentWithoutEntriesIsReadAndHasNone) {
  writeFile(fUser, plist::writeXml(testing::dictionaryOf({{"devices", "none"}})).value());
  fSettings.reread();
  EXPECT_EQ(fSettings.inForce(), SettingsInForce::kUser);
  EXPECT_EQ(fSettings.entries().count(), 0U);
}

TEST_F(HelperSettingsTest, WithoutAnyFileNothingIsInForceAndTheErrorSaysSo) {
  std::filesystem::remove(fFactory);
  fSettings.reread();
  EXPECT_EQ(fSettings.inForce(), SettingsInForce::kNone);
  EXPECT_THAT(fSettings.error(), HasSubstr(fFactory));
  HelperSettings nowhere{"", ""};
  nowhere.reread();
  EXPECT_EQ(nowhere.inForce(), SettingsInForce::kNone);
  EXPECT_THAT(nowhere.error(), HasSubstr("no factory settings"));
}

}  // namespace
}  // namespace veltrix
