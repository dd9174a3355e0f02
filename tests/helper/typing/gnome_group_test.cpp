#include "helper/typing/gnome_group.h"

#include <gmock/gmock.h>

#include "tests/helper/desktop/desktop_fixture.h"
#include "tests/support/private_bus.h"

namespace veltrix {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

// Comes before the fixture, in whose PATH the daemon is not.
struct BusOfTest {
  testing::PrivateBus fDaemon;
};

class GnomeGroupTest : public BusOfTest, public testing::DesktopFixture {
 protected:
  GnomeGroupTest() {
    auto bus = startSessionBus(fDaemon.address());
    EXPECT_TRUE(bus);
    fBus = std::move(bus.value());
    EXPECT_GE(sd_bus_attach_event(fBus.get(), fLoop.get(), SD_EVENT_PRIORITY_NORMAL), 0);
    auto writer =
        openSessionBus(fDaemon.address(), std::chrono::steady_clock::now() + std::chrono::seconds(10));
    EXPECT_TRUE(writer);
    fWriter = std::move(writer.value());
  }
  ~GnomeGroupTest() override { sd_bus_detach_event(fBus.get()); }

  // What gsettings prints from now on, after it has done what `before` says. There is none until the first
  // call.
  void use(const std::string& layout, const std::string& before = "") {
    list(layout);
    addProgram("gsettings", before + "exec /bin/cat " + listed() + "\n");
  }
  void list(const std::string& layout) const {
    const std::string schema = "org.gnome.desktop.input-sources ";
    testing::writeFile(listed(), schema + "mru-sources [('xkb', '" + layout + "')]\n" + schema +
                                     "sources [('xkb', 'us'), ('xkb', 'de'), ('xkb', 'ru')]\n");
  }
  std::string listed() const { return fFolder / "list"; }
  void tell(const std::string& changed) {
    EXPECT_GE(sd_bus_emit_signal(fWriter.get(), "/ca/desrt/dconf/Writer/user", "ca.desrt.dconf.Writer",
                                 "Notify", "sass", changed.c_str(), 1, "", "tag"),
              0);
  }
  bool untilGroup(GnomeGroup& source, std::optional<std::uint32_t> group) const {
    return runUntil([&] { return source.group() == group; });
  }
  // The bus has passed on what was told, and that has been taken in.
  void settle() {
    sd_bus_call_method(fWriter.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                       "GetId", nullptr, nullptr, "");
    bool isAnswered = false;
    const auto answered = [](sd_bus_message*, void* flag, sd_bus_error*) {
      *static_cast<bool*>(flag) = true;
      return 0;
    };
    sd_bus_call_method_async(fBus.get(), nullptr, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                             "org.freedesktop.DBus", "GetId", answered, &isAnswered, "");
    EXPECT_TRUE(runUntil([&] { return isAnswered; }));
  }

  BusHandle fBus;
  BusHandle fWriter;
};

TEST_F(GnomeGroupTest, SettingsAreRead) {
  use("de");
  GnomeGroup source(fLoop.get(), fBus.get(), journal());
  EXPECT_EQ(source.group(), std::nullopt);
  EXPECT_TRUE(untilGroup(source, 1));
  EXPECT_THAT(records(),
              Each(ElementsAre("gsettings", "list-recursively", "org.gnome.desktop.input-sources")));
}

TEST_F(GnomeGroupTest, ChangesAreRead) {
  use("us");
  GnomeGroup source(fLoop.get(), fBus.get(), journal());
  ASSERT_TRUE(untilGroup(source, 0));
  use("ru");
  tell("/org/gnome/desktop/input-sources/mru-sources");
  EXPECT_TRUE(untilGroup(source, 2));
  use("de");
  tell("/org/gnome/desktop/");  // several at once
  EXPECT_TRUE(untilGroup(source, 1));
}

TEST_F(GnomeGroupTest, OtherSettingsAreOfNoConcern) {
  use("us");
  GnomeGroup source(fLoop.get(), fBus.get(), journal());
  ASSERT_TRUE(untilGroup(source, 0));
  tell("/org/gnome/desktop/interface/color-scheme");
  settle();
  EXPECT_EQ(records().size(), 1U);
}

TEST_F(GnomeGroupTest, AChangeWhileTheyAreReadIsReadAfterwards) {
  const std::string read = fFolder / "read";
  const std::string go = fFolder / "go";
  use("us", "[ -e " + go + " ] || { old=$(/bin/cat " + listed() + "); : > " + read + "; until [ -e " + go +
                " ]; do /bin/sleep 0.01; done; printf '%s\\n' \"$old\"; exit; }\n");
  GnomeGroup source(fLoop.get(), fBus.get(), journal());
  ASSERT_TRUE(runUntil([&] { return std::filesystem::exists(read); }));
  tell("/org/gnome/desktop/input-sources/mru-sources");
  tell("/org/gnome/desktop/input-sources/mru-sources");
  settle();
  EXPECT_EQ(records().size(), 1U);
  list("de");
  testing::writeFile(go, "");
  EXPECT_TRUE(untilGroup(source, 0));
  EXPECT_TRUE(untilGroup(source, 1));
  settle();
  EXPECT_EQ(records().size(), 2U);
}

TEST_F(GnomeGroupTest, WithoutGsettingsTheGroupIsUnknown) {
  GnomeGroup source(fLoop.get(), fBus.get(), journal());
  settle();
  EXPECT_EQ(source.group(), std::nullopt);
}

TEST_F(GnomeGroupTest, AReadingThatFailedIsTriedAgainWhenTheGroupIsWanted) {
  use("de", "exit 1\n");
  GnomeGroup source(fLoop.get(), fBus.get(), journal());
  ASSERT_TRUE(runUntil([&] { return !records().empty(); }));
  settle();
  EXPECT_EQ(source.group(), std::nullopt);
  use("de");
  EXPECT_TRUE(untilGroup(source, 1));
}

TEST_F(GnomeGroupTest, FailuresAreNotTriedAgainAllTheTime) {
  use("de", "exit 1\n");
  GnomeGroup source(fLoop.get(), fBus.get(), journal());
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(600);
  EXPECT_TRUE(runUntil([&] {
    source.group();
    return std::chrono::steady_clock::now() > end;
  }));
  EXPECT_LE(records().size(), 3U);  // at once, after 250 ms, and 500 ms later
}

TEST_F(GnomeGroupTest, OneThatHangsCountsAsFailed) {
  use("de", "exec /bin/sleep 20\n");
  GnomeGroup source(fLoop.get(), fBus.get(), journal(), std::chrono::milliseconds(50));
  ASSERT_TRUE(runUntil([&] { return !records().empty(); }));
  use("de");
  EXPECT_TRUE(untilGroup(source, 1));
}

TEST_F(GnomeGroupTest, MayGoWhileGsettingsRuns) {
  use("de", "exec /bin/sleep 0.1\n");
  {
    GnomeGroup source(fLoop.get(), fBus.get(), journal());
    EXPECT_TRUE(runUntil([&] { return !records().empty(); }));
  }
  settle();
}

}  // namespace
}  // namespace veltrix
