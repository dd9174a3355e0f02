#include "settings/support_information.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>

#include "platform/property_list_io.h"
#include "tests/support/settings_documents.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using testing::dictionaryOf;
using ::testing::ElementsAre;

class SupportInformation : public ::testing::Test {
 protected:
  SupportInformation() {
    facts.now = std::chrono::system_clock::time_point(std::chrono::seconds(1795190744));
    facts.bundleVersion = "4.5.6";
    facts.release = {12, 5, 0};
    facts.devices = &fDevices;
  }

  VeltrixDeviceEntry& plug(std::uint16_t vendor, std::uint16_t product, std::uint16_t version) {
    VeltrixDeviceEntry& device = fDevices.device[fDevices.count++];
    device.vendorID = vendor;
    device.productID = product;
    device.productVers = version;
    return device;
  }

  plist::Dictionary device(std::size_t index) const {
    return makeSupportInformation(facts).arrayFor("connected devices").at(index).asDictionary();
  }

  SupportFacts facts;

 private:
  VeltrixDeviceList fDevices{};
};

TEST_F(SupportInformation, HasItsKeysInOrder) {
  EXPECT_THAT(makeSupportInformation(facts).keys(),
              ElementsAre("date", "driver version", "mac os version", "architecture", "connected devices"));
}

TEST_F(SupportInformation, DateIsThatOfUniversalTime) {
  EXPECT_EQ(makeSupportInformation(facts).stringFor("date"), "2026-11-20 16:05:44 +0000");
  facts.now += std::chrono::milliseconds(999);
  EXPECT_EQ(makeSupportInformation(facts).stringFor("date"), "2026-11-20 16:05:44 +0000");
  facts.now = {};
  EXPECT_EQ(makeSupportInformation(facts).stringFor("date"), "1970-01-01 00:00:00 +0000");
}

TEST_F(SupportInformation, TellsTheVersionsOfProductAndSystem) {
  const auto information = makeSupportInformation(facts);
  EXPECT_EQ(information.stringFor("driver version"), "4.5.6");
  EXPECT_EQ(information.stringFor("mac os version"), "12.5.0");
  EXPECT_EQ(information.stringFor("architecture"), sizeof(void*) == 8 ? "x64" : "i386");
}

TEST_F(SupportInformation, MissingBundleVersionEndsItAfterTheDate) {
  facts.bundleVersion = {};
  plug(1, 2, 3);
  EXPECT_THAT(makeSupportInformation(facts).keys(), ElementsAre("date"));
}

TEST_F(SupportInformation, WithoutTrackballsTheListIsEmptyAndThere) {
  EXPECT_TRUE(makeSupportInformation(facts).arrayFor("connected devices"));
  EXPECT_EQ(makeSupportInformation(facts).arrayFor("connected devices").count(), 0U);
  facts.devices = nullptr;
  EXPECT_TRUE(makeSupportInformation(facts).arrayFor("connected devices"));
}

TEST_F(SupportInformation, TrackballsStandInTheOrderOfTheListWithFourLowerCaseDigits) {
  plug(0x2A7, 0x1020, 0x0107);
  plug(0xA1D0, 0x8002, 0x0203);
  EXPECT_EQ(makeSupportInformation(facts).arrayFor("connected devices").count(), 2U);
  EXPECT_EQ(device(0).stringFor("vendor id"), "02a7");
  EXPECT_EQ(device(0).stringFor("product id"), "1020");
  EXPECT_EQ(device(0).stringFor("product version"), "0107");
  EXPECT_EQ(device(1).stringFor("vendor id"), "a1d0");
  EXPECT_EQ(device(1).stringFor("product id"), "8002");
  EXPECT_THAT(device(0).keys(),
              ElementsAre("vendor id", "product id", "product version", "vendor name", "product name"));
}

TEST_F(SupportInformation, NamesAreReadAsUtf8UpToTheirEnd) {
  VeltrixDeviceEntry& entry = plug(1, 2, 3);
  std::strcpy(entry.vendorName, "Ålmoor");
  std::fill(std::begin(entry.productName), std::end(entry.productName), 'x');
  EXPECT_EQ(device(0).stringFor("vendor name"), "Ålmoor");
  EXPECT_EQ(device(0).stringFor("product name"), std::string(128, 'x'));
}

TEST_F(SupportInformation, NamesThatAreNoTextShowReplacements) {
  VeltrixDeviceEntry& entry = plug(1, 2, 3);
  std::strcpy(entry.vendorName, "a\xFF\xC3(b");
  std::strcpy(entry.productName,
              "c\x01"
              "d\xEF\xBF\xBF");
  EXPECT_EQ(device(0).stringFor("vendor name"), "a\uFFFD\uFFFD(b");
  EXPECT_EQ(device(0).stringFor("product name"), "c\uFFFDd\uFFFD");
  EXPECT_TRUE(supportInformationXml(testing::dictionaryOf(), facts).ok());
}

TEST_F(SupportInformation, MoreTrackballsThanThereIsRoomForAreReadAsMany) {
  VeltrixDeviceList list{};
  list.count = 99;
  facts.devices = &list;
  EXPECT_EQ(makeSupportInformation(facts).arrayFor("connected devices").count(), 16U);
}

TEST_F(SupportInformation, FileHoldsTheWholeDocumentWithTheReport) {
  const testing::TemporaryFolder home;
  const std::string path = supportInformationPath(home.path());
  EXPECT_EQ(path, home / "Desktop/Veltrix Info.plist");
  auto document = dictionaryOf({{"version", 2}, {"my own", "kept"}});
  ASSERT_TRUE(writeSupportInformation(path, document, facts).ok());
  const auto file = plist::readFile(path);
  ASSERT_TRUE(file.ok());
  const auto root = file.value().root.asDictionary();
  EXPECT_THAT(root.keys(), ElementsAre("version", "my own", "support"));
  EXPECT_TRUE(plist::equal(root.get("support"), makeSupportInformation(facts)));
  EXPECT_THAT(document.keys(), ElementsAre("version", "my own"));
}

TEST_F(SupportInformation, EarlierFileIsReplaced) {
  const testing::TemporaryFolder home;
  const std::string path = supportInformationPath(home.path());
  testing::writeFile(path, "old");
  ASSERT_TRUE(writeSupportInformation(path, dictionaryOf({{"version", 2}}), facts).ok());
  EXPECT_TRUE(plist::readFile(path).ok());
  EXPECT_EQ(testing::namesIn(home / "Desktop").size(), 1U);
}

TEST_F(SupportInformation, SupportKeyOfTheUsersOwnIsReplacedAndDropped) {
  auto document = dictionaryOf({{"version", 2}, {"support", "mine"}});
  const auto xml = supportInformationXml(document, facts);
  ASSERT_TRUE(xml.ok());
  EXPECT_TRUE(plist::read(xml.value()).value().root.asDictionary().dictionaryFor("support"));
  EXPECT_THAT(document.keys(), ElementsAre("version"));
}

TEST_F(SupportInformation, FailureIsReportedAndLeavesTheDocumentAsItWas) {
  const testing::TemporaryFolder home;
  testing::writeFile(home / "Desktop", "a file where the folder should be");
  auto document = dictionaryOf({{"version", 2}});
  EXPECT_FALSE(writeSupportInformation(supportInformationPath(home.path()), document, facts).ok());
  EXPECT_THAT(document.keys(), ElementsAre("version"));
  EXPECT_FALSE(writeSupportInformation(home / "x.plist", {}, facts).ok());
  EXPECT_FALSE(std::filesystem::exists(home / "x.plist"));
}

}  // namespace
}  // namespace veltrix
