#include <gtest/gtest.h>

#include <set>

#include "helperlink/device_kinds.h"
#include "platform/bundle.h"
#include "platform/property_list_io.h"
#include "settings/command_classes.h"
#include "settings/driver_record.h"
#include "settings/modifier_mask.h"
#include "settings/settings_merge.h"
#include "settings/settings_rules.h"
#include "settings/speed_table.h"
#include "tests/support/settings_documents.h"
#include "tests/support/temporary_folder.h"

// The factory settings that are shipped.
namespace veltrix {
namespace {

using plist::Dictionary;

class DefaultSettings : public ::testing::Test {
 protected:
  static std::string path() { return Bundle::standard().pathForResource("DefaultSettings", "plist"); }

  void SetUp() override {
    const auto file = plist::readFile(path());
    ASSERT_TRUE(file.ok()) << file.error().message;
    fDocument = file.value().root.asDictionary();
    for (const auto& element : fDocument.arrayFor("devices").items()) {
      ASSERT_TRUE(element.asDictionary());
      fEntries.push_back(element.asDictionary());
    }
  }

  // The entry that the rules choose for a device; null when there is none.
  Dictionary entryFor(std::uint16_t product, std::uint16_t version) const {
    std::int32_t best = -1;
    VeltrixMatchAppPrefs(fDocument.arrayFor("devices"), nullptr, nullptr, kFamilyVendorId, product, version,
                         &best, nullptr);
    return best < 0 ? Dictionary() : fEntries[static_cast<std::size_t>(best)];
  }

  static std::set<std::string> keysOf(const Dictionary& dictionary) {
    const auto keys = dictionary.keys();
    return {keys.begin(), keys.end()};
  }

  Dictionary fDocument;
  std::vector<Dictionary> fEntries;
};

TEST_F(DefaultSettings, AreInTheFormInWhichTheStoreWrites) {
  EXPECT_EQ(testing::readFile(path()), plist::writeXml(fDocument).value());
}

TEST_F(DefaultSettings, MayServeAsAUserFile) {
  EXPECT_TRUE(isUsableDocument(fDocument));
}

TEST_F(DefaultSettings, HoldOneEntryForEveryKindAndVersionRange) {
  for (const auto& kind : kDeviceKinds) {
    for (const int version : {0x0100, 0x0106, 0x0107, 0x0203}) {
      const auto entry = entryFor(kind.productId, static_cast<std::uint16_t>(version));
      ASSERT_TRUE(entry) << kind.name;
      EXPECT_EQ(entry.int32For("device vendor id"), kFamilyVendorId);
      EXPECT_EQ(entry.int32For("device product id"), kind.productId);
    }
  }
  EXPECT_EQ(fEntries.size(), kDeviceKindCount + 1);
  EXPECT_FALSE(entryFor(0x2041, 0x0106).sameAs(entryFor(0x2041, 0x0107)));
}

TEST_F(DefaultSettings, HaveEveryKeyInEveryEntry) {
  const std::set<std::string> entryKeys = {"dict version",
                                           "driver enabled",
                                           "device vendor id",
                                           "device product id",
                                           "device version min",
                                           "device version max",
                                           "options",
                                           "buttons",
                                           "param"};
  const std::set<std::string> optionKeys = {
      "speed",       "accelerate", "acceleration",    "jump",         "slow",     "slow keys", "single",
      "single keys", "invert x",   "inertial scroll", "invert wheel", "invert y", "invert z",  "swap xy"};
  const std::set<std::string> paramKeys = {"triggerTime", "timeDecay", "timeStop", "countDecay", "countStop"};
  for (const auto& entry : fEntries) {
    EXPECT_TRUE(VeltrixValidateSettings(entry));
    EXPECT_FALSE(VeltrixSettingsAreGlobal(entry));
    EXPECT_EQ(keysOf(entry), entryKeys);
    EXPECT_EQ(keysOf(entry.dictionaryFor("options")), optionKeys);
    EXPECT_EQ(keysOf(entry.dictionaryFor("param")), paramKeys);
  }
}

TEST_F(DefaultSettings, GiveEveryKindItsButtons) {
  const std::set<std::string> four = {"00", "01", "02", "03", "12"};
  const std::set<std::string> fourAndChords = {"00", "01", "02", "03", "08", "09", "12"};
  const std::set<std::string> twoAndChord = {"00", "01", "08", "12"};
  const auto buttonsFor = [this](std::uint16_t product, std::uint16_t version) {
    return keysOf(entryFor(product, version).dictionaryFor("buttons"));
  };
  EXPECT_EQ(buttonsFor(0x1020, 0x0100), fourAndChords);
  EXPECT_EQ(buttonsFor(0x2041, 0x0107), fourAndChords);
  EXPECT_EQ(buttonsFor(0x2041, 0x0106), four);
  EXPECT_EQ(buttonsFor(0x1022, 0x0100), twoAndChord);
  EXPECT_EQ(buttonsFor(0x2048, 0x0100), twoAndChord);
  EXPECT_EQ(buttonsFor(0x8002, 0x0100), twoAndChord);
}

TEST_F(DefaultSettings, HaveExactlyOnePlainPrimaryClickOnTheFirstButton) {
  for (const auto& entry : fEntries) {
    EXPECT_EQ(VeltrixFindClickInSettings(entry, 0, 3, -1), 0);
    EXPECT_EQ(VeltrixFindClickInSettings(entry, 0, 3, 0), -1);
  }
}

TEST_F(DefaultSettings, HaveASpeedAndAnAccelerationThatTheSlidersCanShow) {
  for (const auto& entry : fEntries) {
    const auto options = entry.dictionaryFor("options");
    const auto speed = options.int32For("speed");
    EXPECT_EQ(speedAtSlider(static_cast<std::uint32_t>(sliderForSpeed(speed))), speed);
    const double acceleration = options.realFor("acceleration");
    EXPECT_EQ(options.get("acceleration").type(), plist::Type::kReal);
    const int position = static_cast<int>(acceleration * 50.0);
    EXPECT_EQ(static_cast<double>(static_cast<float>(position / 50.0)), acceleration);
  }
}

TEST_F(DefaultSettings, HaveModifiersThatThePaneCanShow) {
  for (const auto& entry : fEntries) {
    for (const char* key : {"slow keys", "single keys"}) {
      const auto mask = entry.dictionaryFor("options").uint32For(key);
      EXPECT_NE(mask, 0U) << key;
      EXPECT_EQ(mask & ~static_cast<std::uint32_t>(kEditableModifiers), 0U) << key;
    }
  }
}

TEST_F(DefaultSettings, MakeACompleteRecord) {
  for (const auto& entry : fEntries) {
    DriverRecord record;
    ASSERT_TRUE(VeltrixAppPrefsDictToStruct(entry, {}, &record));
    EXPECT_EQ(record.driverEnabled, 1);
    EXPECT_EQ(record.speed, 20);
    EXPECT_EQ(record.acceleration, 100);
    EXPECT_EQ(record.axisFlags, 0);
    EXPECT_EQ(record.slowModifiers, 0);
    EXPECT_EQ(record.singleModifiers, 0);
    EXPECT_EQ(record.inertialScroll, 1);
    EXPECT_EQ(record.actionCount, entry.dictionaryFor("buttons").count());
    EXPECT_EQ(+record.action[12].command, kScrollCommand);
    EXPECT_GT(+record.action[12].argument, 0);
  }
}

TEST_F(DefaultSettings, HoldTenUnnamedEmptySnippets) {
  const auto snippets = fDocument.arrayFor("snippets");
  ASSERT_EQ(snippets.count(), 10U);
  for (std::size_t i = 0; i < snippets.count(); ++i) {
    const auto snippet = snippets.at(i).asDictionary();
    EXPECT_EQ(snippet.stringFor("name"), "Snippet " + std::to_string(i + 1));
    EXPECT_EQ(snippet.get("text").type(), plist::Type::kString);
    EXPECT_EQ(snippet.stringFor("text"), "");
  }
}

}  // namespace
}  // namespace veltrix
