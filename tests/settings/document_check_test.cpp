#include "settings/document_check.h"

#include <gmock/gmock.h>

#include <functional>
#include <limits>

#include "platform/bundle.h"
#include "platform/property_list_io.h"
#include "settings/settings_schema.h"
#include "tests/support/settings_documents.h"

namespace veltrix {

void PrintTo(const DocumentProblem& problem, std::ostream* out) {
  *out << problem.place << ": " << problem.reason;
}

namespace {

using plist::Dictionary;
using plist::Value;
using testing::actionOf;
using testing::arrayOf;
using testing::dictionaryOf;
using testing::documentOf;
using ::testing::ElementsAre;
using testing::entryOf;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

Dictionary goodEntry(std::int64_t product = 0x1020) {
  auto entry = entryOf(0xA1D0, product);
  entry.set("buttons", dictionaryOf({{"00", actionOf(1)}}));
  entry.set("options", dictionaryOf({{"speed", 400}, {"acceleration", 1.0}}));
  return entry;
}

auto problem(const std::string& place, const std::string& part) {
  return AllOf(Field(&DocumentProblem::place, place), Field(&DocumentProblem::reason, HasSubstr(part)));
}

// The only problem of a good document after `change` has been made to its entry.
void expectProblem(const std::function<void(Dictionary)>& change, const std::string& place,
                   const std::string& part) {
  const auto entry = goodEntry();
  change(entry);
  EXPECT_THAT(checkSettingsDocument(documentOf({entry})), ElementsAre(problem(place, part)));
}

void expectOption(const char* key, const Value& value, const std::string& part) {
  expectProblem([&](const Dictionary& entry) { entry.dictionaryFor("options").set(key, value); },
                std::string("devices/0/options/") + key, part);
}

void expectActionProblem(const Dictionary& action, const std::string& place, const std::string& part) {
  expectProblem([&](const Dictionary& entry) { entry.dictionaryFor("buttons").set("03", action); },
                "devices/0/buttons/03" + place, part);
}

TEST(DocumentCheck, FindsNothingWrongWithTheFactorySettings) {
  const auto file = plist::readFile(Bundle::standard().pathForResource("DefaultSettings", "plist"));
  ASSERT_TRUE(file.ok());
  EXPECT_THAT(checkSettingsDocument(file.value().root), IsEmpty());
}

TEST(DocumentCheck, TakesNumbersAndKeysThatReadersTake) {
  auto entry = goodEntry();
  entry.set("driver enabled", 1);
  entry.set("unknown", "anything");
  entry.dictionaryFor("options").set("acceleration", 1);
  entry.dictionaryFor("options").set("speed", 400.0);
  EXPECT_THAT(checkSettingsDocument(documentOf({entry})), IsEmpty());
}

TEST(DocumentCheck, WantsADictionaryAsRoot) {
  EXPECT_THAT(checkSettingsDocument("text"), ElementsAre(problem("", "a text instead of a dictionary")));
  EXPECT_THAT(checkSettingsDocument({}), ElementsAre(problem("", "nothing instead of a dictionary")));
}

TEST(DocumentCheck, WantsAVersionAboveOneAndDevices) {
  EXPECT_THAT(checkSettingsDocument(dictionaryOf()),
              ElementsAre(problem("", "no \"version\""), problem("devices", "instead of an array")));
  EXPECT_THAT(checkSettingsDocument(dictionaryOf({{"version", 1}, {"devices", arrayOf()}})),
              ElementsAre(problem("version", "1 is outside 2 to"), problem("devices", "empty")));
}

TEST(DocumentCheck, WantsDictionariesAsEntries) {
  EXPECT_THAT(checkSettingsDocument(documentOf({goodEntry(), "text"})),
              ElementsAre(problem("devices/1", "a text instead of a dictionary")));
}

TEST(DocumentCheck, NamesEachMissingKeyOfAnEntry) {
  for (const char* key : {"driver enabled", "dict version", "device vendor id", "device product id",
                          "device version min", "device version max", "buttons", "options"}) {
    expectProblem([&](Dictionary entry) { entry.remove(key); }, "devices/0",
                  "no \"" + std::string(key) + "\"");
  }
}

TEST(DocumentCheck, FindsIdsThatNoDeviceHas) {
  expectProblem([](Dictionary entry) { entry.set("device vendor id", 0x10000); },
                "devices/0/device vendor id", "65536 is outside 0 to 65535");
  expectProblem([](Dictionary entry) { entry.set("device product id", -1); }, "devices/0/device product id",
                "-1 is outside");
  expectProblem(
      [](Dictionary entry) {
        entry.set("device version min", 0x0200);
        entry.set("device version max", 0x0100);
      },
      "devices/0/device version max", "fits no device");
}

TEST(DocumentCheck, FindsAnEntryThatAnEarlierOneHides) {
  EXPECT_THAT(checkSettingsDocument(documentOf({goodEntry(), goodEntry(5), goodEntry()})),
              ElementsAre(problem("devices/2", "devices/0")));
}

TEST(DocumentCheck, FindsAnotherLayoutVersion) {
  expectProblem([](Dictionary entry) { entry.set("dict version", 2); }, "devices/0/dict version",
                "2 is outside 1 to 1");
}

TEST(DocumentCheck, FindsContainersOfTheWrongType) {
  expectProblem([](Dictionary entry) { entry.set("options", arrayOf()); }, "devices/0/options",
                "an array instead of a dictionary");
  expectProblem([](Dictionary entry) { entry.set("buttons", 5); }, "devices/0/buttons", "an integer instead");
  expectProblem([](Dictionary entry) { entry.set("param", true); }, "devices/0/param", "a boolean instead");
}

TEST(DocumentCheck, FindsOptionsOutOfRange) {
  expectOption("speed", 79, "79 is outside 80 to 6400");
  expectOption("speed", 6401, "6401 is outside");
  expectOption("acceleration", 4.1, "outside 0 to 4");
  expectOption("acceleration", -0.1, "outside 0 to 4");
  expectOption("acceleration", std::numeric_limits<double>::quiet_NaN(), "outside 0 to 4");
  expectOption("slow keys", 0x2000, "bits of no modifier key");
  expectOption("single keys", 1, "bits of no modifier key");
}

TEST(DocumentCheck, FindsOptionsOfTheWrongType) {
  expectOption("speed", "fast", "a text instead of an integer");
  expectOption("speed", 400.5, "a number instead of an integer");
  expectOption("accelerate", "true", "a text instead of a boolean");
  expectOption("acceleration", "1", "a text instead of a number");
  expectOption("invert x", arrayOf(), "an array instead of a boolean");
}

TEST(DocumentCheck, FindsButtonsThatNeverReachTheDriver) {
  for (const char* key : {"16", "5", "016", "-1", "ab", ""}) {
    expectProblem([&](const Dictionary& entry) { entry.dictionaryFor("buttons").set(key, actionOf(2)); },
                  std::string("devices/0/buttons/") + key, "is no button");
  }
}

TEST(DocumentCheck, FindsWhatIsWrongWithAnAction) {
  expectActionProblem(dictionaryOf(), "", "no \"cmd\"");
  expectActionProblem(actionOf(70000), "/cmd", "70000 is outside 0 to 65535");
  expectActionProblem(dictionaryOf({{"cmd", 2}, {"mod", 0x2000}}), "/mod", "bits of no modifier key");
  expectActionProblem(dictionaryOf({{"cmd", 10}, {"key", 256}}), "/key", "256 is outside 0 to 255");
  expectActionProblem(dictionaryOf({{"cmd", 20}, {"cnt", -1}}), "/cnt", "-1 is outside");
  expectActionProblem(dictionaryOf({{"cmd", 70}, {"str", 5}}), "/str", "an integer instead of a text");
  expectActionProblem(dictionaryOf({{"cmd", 2}, {"label", 5}}), "/label", "an integer instead of a text");
  expectProblem([](const Dictionary& entry) { entry.dictionaryFor("buttons").set("03", "text"); },
                "devices/0/buttons/03", "a text instead of a dictionary");
}

TEST(DocumentCheck, FindsAWheelThatDoesNotScroll) {
  expectProblem([](const Dictionary& entry) { entry.dictionaryFor("buttons").set("12", actionOf(21)); },
                "devices/0/buttons/12/cmd", "always carries command 20");
}

TEST(DocumentCheck, FindsAMissingPrimaryClick) {
  expectProblem([](const Dictionary& entry) { entry.dictionaryFor("buttons").set("00", actionOf(2)); },
                "devices/0/buttons", "plain primary click");
  expectProblem(
      [](const Dictionary& entry) { entry.dictionaryFor("buttons").set("00", testing::clickOf(1, 0x0100)); },
      "devices/0/buttons", "plain primary click");
}

TEST(DocumentCheck, FindsScrollParametersOfTheWrongType) {
  expectProblem(
      [](Dictionary entry) {
        entry.set("param", dictionaryOf({{"timeStop", "long"}}));
      },
      "devices/0/param/timeStop", "a text instead of an integer");
}

TEST(DocumentCheck, FindsWhatIsWrongWithSnippets) {
  auto document = documentOf({goodEntry()});
  document.set("snippets", "text");
  EXPECT_THAT(checkSettingsDocument(document), ElementsAre(problem("snippets", "instead of an array")));
  const auto snippets = arrayOf({dictionaryOf({{"name", 5}}), "text"});
  document.set("snippets", snippets);
  EXPECT_THAT(checkSettingsDocument(document),
              ElementsAre(problem("snippets/0/name", "an integer instead of a text"),
                          problem("snippets/1", "a text instead of a dictionary")));
  auto many = plist::Array::create();
  for (int i = 0; i < 11; ++i) {
    many.append(dictionaryOf({{"name", "a"}}));
  }
  document.set("snippets", many);
  EXPECT_THAT(checkSettingsDocument(document), ElementsAre(problem("snippets/10", "never typed")));
}

TEST(SettingsSchema, KnowsTheTypeOfEveryScalarKey) {
  EXPECT_EQ(settingsTypeOf("speed"), plist::Type::kInteger);
  EXPECT_EQ(settingsTypeOf("acceleration"), plist::Type::kReal);
  EXPECT_EQ(settingsTypeOf("paramUI"), plist::Type::kBoolean);
  EXPECT_EQ(settingsTypeOf("label"), plist::Type::kString);
  EXPECT_EQ(settingsTypeOf("options"), plist::Type::kMissing);
  EXPECT_EQ(settingsTypeOf("unknown"), plist::Type::kMissing);
}

}  // namespace
}  // namespace veltrix
