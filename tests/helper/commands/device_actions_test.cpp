#include "helper/commands/device_actions.h"

#include <gtest/gtest.h>

#include "helperlink/helper_protocol.h"
#include "platform/property_list_io.h"
#include "tests/support/settings_documents.h"
#include "tests/support/temporary_folder.h"

namespace veltrix {
namespace {

using testing::actionOf;
using testing::arrayOf;
using testing::dictionaryOf;
using testing::documentOf;
using testing::entryOf;

constexpr DeviceAddress kBall{0xA1D0, 0x2041, 0x0107, 0};

plist::Dictionary withButtons(plist::Dictionary entry, const plist::Dictionary& buttons) {
  entry.set("buttons", buttons);
  return entry;
}

FoundDevice found(const DeviceAddress& address, const std::string& id = "one") {
  FoundDevice device;
  device.id = id;
  device.entry.vendorID = address.vendor;
  device.entry.productID = address.product;
  device.entry.productVers = address.productVersion;
  return device;
}

class DeviceActionsTest : public ::testing::Test {
 protected:
  // The helper's core with that document as the user's settings.
  HelperCore& withSettings(const plist::Dictionary& document) {
    const std::string path = folder / "settings.plist";
    testing::writeFile(path, plist::writeXml(document).value());
    core = std::make_unique<HelperCore>(path, "");
    return *core;
  }
  CommandAction action(std::uint16_t slot, const DeviceAddress& device = kBall) const {
    return DeviceActions(*core).actionOf(device, slot);
  }

  testing::TemporaryFolder folder;
  std::unique_ptr<HelperCore> core;
};

TEST_F(DeviceActionsTest, AreThoseOfTheEntryInForceWithTheirTexts) {
  const auto launch = dictionaryOf({{"cmd", 71}, {"str", "Editor"}, {"bndl", "org.example.Editor"}});
  withSettings(documentOf({withButtons(entryOf(0xA1D0, 0), dictionaryOf({{"02", actionOf(35)}})),
                           withButtons(entryOf(0xA1D0, 0x2041),
                                       dictionaryOf({{"02", launch}, {"12", actionOf(146)}}))}))
      .deviceAttached(found(kBall));
  EXPECT_EQ(action(2).command, 71);
  EXPECT_EQ(action(2).text, "Editor");
  EXPECT_EQ(action(2).bundleId, "org.example.Editor");
  EXPECT_EQ(action(12).command, 146);
  EXPECT_EQ(action(3).command, 0);
}

TEST_F(DeviceActionsTest, CountWithTheLowBitsOfTheCommand) {
  withSettings(documentOf({withButtons(entryOf(0xA1D0, 0x2041), dictionaryOf({{"00", actionOf(0x70023)}}))}))
      .deviceAttached(found(kBall));
  EXPECT_EQ(action(0).command, 0x23);
}

TEST_F(DeviceActionsTest, DeferToTheSameButtonOfTheGlobalEntry) {
  const auto url = dictionaryOf({{"cmd", 72}, {"str", "https://example.org"}});
  const auto deferring = dictionaryOf({{"00", actionOf(200)}, {"01", actionOf(200)}});
  withSettings(documentOf({withButtons(entryOf(0, 0), dictionaryOf({{"00", url}})),
                           withButtons(entryOf(0xA1D0, 0x2041), deferring)}))
      .deviceAttached(found(kBall));
  EXPECT_EQ(action(0).command, 72);
  EXPECT_EQ(action(0).text, "https://example.org");
  EXPECT_EQ(action(1).command, 0);
}

TEST_F(DeviceActionsTest, DeferInVainWithoutAGlobalEntry) {
  withSettings(documentOf({withButtons(entryOf(0xA1D0, 0x2041), dictionaryOf({{"00", actionOf(200)}}))}))
      .deviceAttached(found(kBall));
  EXPECT_EQ(action(0).command, 200);
}

TEST_F(DeviceActionsTest, TheGlobalEntryDefersToNobody) {
  withSettings(documentOf({withButtons(entryOf(0, 0), dictionaryOf({{"00", actionOf(200)}}))}))
      .deviceAttached(found(kBall));
  EXPECT_EQ(action(0).command, 200);
}

TEST_F(DeviceActionsTest, ATrackballOfNoKnownKindUsesTheGlobalEntry) {
  constexpr DeviceAddress kUnknown{0xA1D0, 0xFEED, 0x0100, 0};
  withSettings(documentOf({withButtons(entryOf(0, 0), dictionaryOf({{"03", actionOf(180)}})),
                           withButtons(entryOf(0xA1D0, 0x2041), dictionaryOf({{"03", actionOf(35)}}))}))
      .deviceAttached(found(kUnknown));
  EXPECT_EQ(action(3, kUnknown).command, 180);
}

TEST_F(DeviceActionsTest, AreNoneOfATrackballThatIsNotThere) {
  withSettings(documentOf({withButtons(entryOf(0xA1D0, 0x2041), dictionaryOf({{"00", actionOf(35)}}))}))
      .deviceAttached(found(kBall));
  EXPECT_EQ(action(0, {0xA1D0, 0x2041, 0x0108, 0}).command, 0);
  core->deviceDetached("one");
  EXPECT_EQ(action(0).command, 0);
}

TEST_F(DeviceActionsTest, AreNoneOfAnEntryOfAnotherLayout) {
  auto entry = withButtons(entryOf(0xA1D0, 0x2041), dictionaryOf({{"00", actionOf(35)}}));
  entry.set("dict version", 2);
  withSettings(documentOf({entry})).deviceAttached(found(kBall));
  EXPECT_EQ(action(0).command, 0);
}

TEST_F(DeviceActionsTest, ValuesOfOtherTypesCountAsAbsent) {
  const auto odd = dictionaryOf({{"cmd", arrayOf()}, {"str", 7}, {"bndl", true}});
  withSettings(documentOf({withButtons(entryOf(0xA1D0, 0x2041), dictionaryOf({{"00", odd}, {"01", 35}}))}))
      .deviceAttached(found(kBall));
  EXPECT_EQ(action(0).command, 0);
  EXPECT_EQ(action(0).text, "");
  EXPECT_EQ(action(1).command, 0);
}

TEST_F(DeviceActionsTest, SnippetsAreThoseOfTheFileFromOneOn) {
  auto document = documentOf({entryOf(0xA1D0, 0x2041)});
  document.set("snippets", arrayOf({dictionaryOf({{"name", "Greeting"}, {"text", "Good day\n"}}),
                                    dictionaryOf({{"name", "Empty"}})}));
  const HelperCore& helper = withSettings(document);
  const DeviceActions actions(helper);
  EXPECT_EQ(actions.snippet(1), "Good day\n");
  EXPECT_EQ(actions.snippet(2), "");
  EXPECT_EQ(actions.snippet(3), "");
  EXPECT_EQ(actions.snippet(0), "");
}

TEST_F(DeviceActionsTest, AChangeOfTheFileChangesThem) {
  HelperCore& helper = withSettings(documentOf({entryOf(0xA1D0, 0x2041)}));
  helper.deviceAttached(found(kBall));
  auto document = documentOf({withButtons(entryOf(0xA1D0, 0x2041), dictionaryOf({{"00", actionOf(180)}}))});
  document.set("snippets", arrayOf({dictionaryOf({{"text", "new"}})}));
  testing::writeFile(folder / "settings.plist", plist::writeXml(document).value());
  const std::uint32_t message = kSettingsChangedMessage;
  EventReply reply;
  const EventParameter parameter(kDirectObjectKeyword, kUnsigned32Type,
                                 std::as_bytes(std::span(&message, 1)));
  EXPECT_EQ(helper.takeEvent({kVeltrixEventClass, kHelperMessageEvent, parameter}, &reply), 0);
  helper.settle();
  EXPECT_EQ(action(0).command, 180);
  EXPECT_EQ(DeviceActions(helper).snippet(1), "new");
}

}  // namespace
}  // namespace veltrix
