#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "driverlink/packet_rules.h"
#include "fuzz/byte_source.h"
#include "helper/commands/device_actions.h"
#include "platform/property_list_io.h"
#include "platform/text_encoding.h"
#include "tests/support/fake_session.h"
#include "tests/support/settings_documents.h"

// Buttons with whatever they hold in the user's file are pressed and released, in a session whose answers
// come when it pleases and say what they like. What an action says arrives as it stands and at its own place,
// and what is told of a failure is one line.
namespace {

using veltrix::CommandProblem;
using veltrix::plist::Dictionary;

constexpr veltrix::DeviceAddress kBall{0xA1D0, 0x2041, 0x0107, 0};
constexpr std::size_t kActions = 16;

void require(bool holds) {
  if (!holds)
    std::abort();
}

// Half of the commands are those that have texts.
std::uint16_t commandOf(ByteSource& source) {
  const std::uint8_t choice = source.byte();
  return choice < 128 ? static_cast<std::uint16_t>(70 + choice % 4) : source.word();
}

veltrix::plist::Value textOf(ByteSource& source) {
  const std::size_t length = source.below(64);
  std::string text(source.take(length));
  while (const auto bad = veltrix::firstBadUtf8(text)) text.erase(*bad, 1);
  std::erase_if(text, [](char c) { return c >= '\0' && c < ' ' && c != '\n' && c != '\t'; });
  return length == 63 ? veltrix::plist::Value(7) : veltrix::plist::Value(text);
}

// A place for the settings of this process.
class SettingsPlace {
 public:
  SettingsPlace() = default;
  ~SettingsPlace() {
    std::error_code ignored;
    std::filesystem::remove(fPath, ignored);
  }
  SettingsPlace(const SettingsPlace&) = delete;
  SettingsPlace& operator=(const SettingsPlace&) = delete;
  const std::string& path() const { return fPath; }

 private:
  const std::string fPath =
      std::filesystem::temp_directory_path() / ("veltrix-fuzz-commands-" + std::to_string(getpid()));
};

Dictionary buttonsOf(ByteSource& source) {
  auto buttons = Dictionary::create();
  for (std::size_t slot = 0; slot < kActions; ++slot) {
    auto action = Dictionary::create();
    action.set("cmd", commandOf(source));
    action.set("str", textOf(source));
    action.set("bndl", textOf(source));
    buttons.set((slot < 10 ? "0" : "") + std::to_string(slot), action);
  }
  return buttons;
}

// The core with those buttons, and those of the entry for every device.
std::unique_ptr<veltrix::HelperCore> coreWith(ByteSource& source, const std::string& path) {
  auto own = veltrix::testing::entryOf(0xA1D0, 0x2041);
  own.set("buttons", buttonsOf(source));
  auto global = veltrix::testing::entryOf(0, 0);
  global.set("buttons", buttonsOf(source));
  auto document = veltrix::testing::documentOf({own, global});
  document.set("snippets", veltrix::testing::arrayOf({textOf(source)}));
  const auto xml = veltrix::plist::writeXml(document);
  require(xml.ok());
  std::ofstream(path, std::ios::binary | std::ios::trunc) << xml.value();
  auto core = std::make_unique<veltrix::HelperCore>(path, "");
  require(core->settings().error().empty());
  veltrix::FoundDevice device;
  device.entry.vendorID = kBall.vendor;
  device.entry.productID = kBall.product;
  device.entry.productVers = kBall.productVersion;
  core->deviceAttached(device);
  return core;
}

bool isControl(char c) {
  return (c >= '\0' && c < ' ') || c == '\x7F';
}

void checkProblem(const CommandProblem& problem) {
  require(!problem.reason.empty() && problem.reason.size() <= veltrix::kLongestReason);
  require(std::none_of(problem.reason.begin(), problem.reason.end(), isControl));
  require(!veltrix::firstBadUtf8(problem.reason));
}

// The texts of an action reach what they are for and nothing else.
void checkDeeds(const std::vector<std::string>& deeds, const veltrix::CommandAction& action) {
  for (const std::string& deed : deeds) {
    if (deed.starts_with("item "))
      require(action.command == 70 && deed == "item " + action.text);
    if (deed.starts_with("launch "))
      require(action.command == 71 && deed == "launch " + action.bundleId + "|" + action.text);
    if (deed.starts_with("url "))
      require(action.command == 72 && deed == "url " + action.text);
    if (deed.starts_with("script "))
      require(action.command == 73 && deed == "script " + action.text);
  }
}

void endSome(veltrix::testing::FakeSession& session, ByteSource& source) {
  while (!session.waiting.empty() && source.byte() % 4 != 0) {
    if (source.byte() % 2 == 0)
      session.endNext();
    else
      session.endNext(veltrix::Error{0, std::string(source.take(source.byte())), std::nullopt});
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const SettingsPlace kPlace;
  ByteSource source({reinterpret_cast<const char*>(data), size});
  const auto core = coreWith(source, kPlace.path());
  const veltrix::DeviceActions actions(*core);
  veltrix::testing::FakeSession session;
  session.holds = true;
  const veltrix::SessionKind kind{static_cast<std::uint8_t>(1U << source.below(5)),
                                  veltrix::DisplayKind::kX11};
  veltrix::CommandRunner runner(kind, session.parts(), actions, checkProblem);
  while (!source.isAtEnd()) {
    const std::uint8_t choice = source.byte();
    auto packet = veltrix::makePacket<veltrix::ButtonPacket>();
    packet.device = kBall;
    packet.slot = choice % kActions;
    packet.pressed = choice / kActions % 2;
    packet.forHelper = 1;
    const auto action = actions.actionOf(kBall, packet.slot);
    packet.command = action.command;
    session.taken();
    runner.take(packet);
    checkDeeds(session.taken(), action);
    require(session.waiting.size() <= veltrix::kMostCommandsUnderWay);
    endSome(session, source);
  }
  return 0;
}
