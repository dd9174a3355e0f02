#include "helper/desktop/launcher.h"

#include <gmock/gmock.h>

#include <rapidcheck/gtest.h>
#include <algorithm>

#include "tests/helper/desktop/launcher_fixture.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class LauncherTest : public testing::LauncherFixture {};

TEST_F(LauncherTest, ProgramOfTheTableIsStartedAndItsFailureTold) {
  addProgram("shooter");
  EXPECT_TRUE(outcomeOf([&](Ended ended) { fLauncher->start({{"shooter", "-f"}}, ended); }));
  EXPECT_THAT(onlyRecord(), ElementsAre("shooter", "-f"));
  addProgram("failing", "exit 1\n");
  EXPECT_EQ(reasonOf(outcomeOf([&](Ended ended) { fLauncher->start({{"failing"}}, ended); })),
            "failing ended with exit status 1");
  EXPECT_EQ(reasonOf(outcomeOf([&](Ended ended) { fLauncher->start({{"missing"}}, ended); })),
            "missing is not installed");
}

TEST_F(LauncherTest, SettingIsChanged) {
  writeScript("bin/gsettings", "[ \"$1\" = get ] && echo false || echo \"$@\" > \"$HOME/set\"\n");
  EXPECT_TRUE(outcomeOf([&](Ended ended) { fLauncher->change({"org.example", "on"}, ended); }));
  EXPECT_EQ(testing::readFile(home() + "/set"), "set org.example on true\n");
}

TEST_F(LauncherTest, KeysOfAShortcutAreReadFromTheSettings) {
  std::string keys;
  const auto shortcut = [&] {
    return outcomeOf([&](const Ended& ended) {
      fLauncher->readShortcut({"org.example", "show"}, [&keys, ended](const Result<KeyStroke>& stroke) {
        keys = stroke ? std::to_string(stroke.value().modifiers) + "+" + std::to_string(stroke.value().keysym)
                      : "";
        ended(stroke ? Status(Done()) : stroke.error());
      });
    });
  };
  EXPECT_EQ(reasonOf(shortcut()), "gsettings is not installed");
  addProgram("gsettings", "echo \"['<Super>d', '<Control>F5']\"\n");
  EXPECT_TRUE(shortcut());
  EXPECT_EQ(keys, "8+100");
  EXPECT_THAT(onlyRecord(), ElementsAre("gsettings", "get", "org.example", "show"));
  addProgram("gsettings", "echo '@as []'\n");
  EXPECT_EQ(reasonOf(shortcut()), "the desktop has no keys for it");
  addProgram("gsettings", "exit 1\n");
  EXPECT_EQ(reasonOf(shortcut()), "gsettings ended with exit status 1");
}

TEST_F(LauncherTest, ItemIsOpenedByTheDesktop) {
  addProgram("gio");
  testing::writeFile(home() + "/a $(b).txt", "");
  EXPECT_TRUE(openItem("~/a $(b).txt"));
  EXPECT_THAT(onlyRecord(), ElementsAre("gio", "open", home() + "/a $(b).txt"));
}

TEST_F(LauncherTest, MissingItemIsReportedAndNothingStarted) {
  addProgram("gio");
  EXPECT_EQ(reasonOf(openItem("~/missing")), "cannot open " + home() + "/missing: No such file or directory");
  EXPECT_THAT(reasonOf(openItem("~anna/x")), HasSubstr("not absolute"));
  EXPECT_THAT(records(), IsEmpty());
}

TEST_F(LauncherTest, ItemThatIsAnApplicationIsStarted) {
  addProgram("gio");
  addProgram("sums");
  writeScript("home/Own.app/Own", "echo own\n");
  testing::writeFile(home() + "/sums.desktop",
                     "[Desktop Entry]\nType=Application\nName=Sums\nExec=sums -x\n");
  EXPECT_TRUE(openItem("~/sums.desktop"));
  EXPECT_THAT(onlyRecord(), ElementsAre("sums", "-x"));
  EXPECT_TRUE(openItem("~/Own.app"));
  EXPECT_TRUE(runUntil([this] { return journalText() == "own\n"; }));
}

TEST_F(LauncherTest, ApplicationIsStartedByItsIdentifierOrItsName) {
  addProgram("sums");
  addEntry("org.example.Sums", "Exec=sums\n");
  EXPECT_TRUE(launch("org.example.Sums", ""));
  EXPECT_THAT(onlyRecord(), ElementsAre("sums"));
  forgetRecords();
  EXPECT_TRUE(launch("", "org.example.Sums"));
  EXPECT_THAT(onlyRecord(), ElementsAre("sums"));
  EXPECT_EQ(reasonOf(launch("org.example.Gone", "")), "the application org.example.Gone is not installed");
}

TEST_F(LauncherTest, ApplicationOfTheProductIsFoundInItsFolder) {
  writeScript("lib/veltrix/Thing.app/Thing", "echo thing\n");
  EXPECT_TRUE(launch("", "Thing"));
  EXPECT_TRUE(runUntil([this] { return journalText() == "thing\n"; }));
}

TEST_F(LauncherTest, AddressIsOpenedByTheDesktopOrRefused) {
  addProgram("gio");
  EXPECT_TRUE(openUrl("https://example.org/?a=$(b)&c=';d"));
  EXPECT_THAT(onlyRecord(), ElementsAre("gio", "open", "https://example.org/?a=$(b)&c=';d"));
  forgetRecords();
  EXPECT_THAT(reasonOf(openUrl("file:///etc/passwd")), HasSubstr("may not open"));
  EXPECT_THAT(reasonOf(openUrl("--version")), HasSubstr("no scheme"));
  EXPECT_THAT(records(), IsEmpty());
}

TEST_F(LauncherTest, ScriptRunsAndItsFailureIsToldLater) {
  EXPECT_TRUE(runScript("echo hello; exit 4"));
  EXPECT_TRUE(runUntil([this] { return !fFailures.empty(); }));
  EXPECT_EQ(journalText(), "hello\n");
  EXPECT_THAT(fFailures, ElementsAre("the script ended with exit status 4"));
  EXPECT_THAT(reasonOf(runScript("")), HasSubstr("empty"));
}

class HostileText : public testing::LauncherFixture {};

// Text that shells, openers and terminals could misread.
rc::Gen<std::string> hostileText() {
  return rc::gen::mapcat(rc::gen::inRange(0, 24), [](int length) {
    const auto part = rc::gen::oneOf(
        rc::gen::element<std::string>("$(reboot)", "`", "'", "\"", "\\", " ", "\n", ";", "&", "|", "--", "-",
                                      "%u", "%20", "~", "*", "..", "/", "\x1B[", "ä", "\xFF", "$HOME", "#"),
        rc::gen::map(rc::gen::nonZero<char>(), [](char character) { return std::string(1, character); }));
    return rc::gen::map(rc::gen::container<std::vector<std::string>>(static_cast<std::size_t>(length), part),
                        [](const std::vector<std::string>& parts) {
                          std::string text;
                          for (const std::string& each : parts) {
                            text += each;
                          }
                          return text;
                        });
  });
}

RC_GTEST_FIXTURE_PROP(HostileText, ReachesTheOpenerAsItsOneArgumentOrNotAtAll, ()) {
  const std::string text = *hostileText();
  forgetRecords();
  addProgram("gio");
  addProgram("xdg-open");
  for (const std::string& url : {text, "https:" + text}) {
    const bool taken = openUrl(url).ok();
    RC_ASSERT(records().size() == (taken ? 1U : 0U));
    if (taken) {
      RC_ASSERT(records().front() == (Record{"gio", "open", url}));
      forgetRecords();
    }
  }
}

RC_GTEST_FIXTURE_PROP(HostileText, NamesAFileOrNothing, ()) {
  std::string name = *hostileText();
  std::replace(name.begin(), name.end(), '/', '_');
  RC_PRE(!name.empty() && name != "." && name != ".." && name != "~");  // folders that exist
  forgetRecords();
  addProgram("gio");
  testing::writeFile(home() + "/" + name, "");
  RC_ASSERT(openItem("~/" + name).ok());
  RC_ASSERT(records() == std::vector<Record>({{"gio", "open", home() + "/" + name}}));
  forgetRecords();
  std::filesystem::remove(home() + "/" + name);
  RC_ASSERT(!openItem("~/" + name).ok());
  RC_ASSERT(!openItem(name).ok());
  RC_ASSERT(records().empty());
}

RC_GTEST_FIXTURE_PROP(HostileText, StartsNoApplicationThatItDoesNotName, ()) {
  const std::string text = *hostileText();
  forgetRecords();
  addProgram("sums");
  addEntry("sums", "Exec=sums\n");
  RC_PRE(text != "sums");
  RC_PRE(!text.starts_with('/') && !text.starts_with('~'));
  RC_ASSERT(!launch(text, "").ok());
  RC_ASSERT(!launch("", text).ok());
  RC_ASSERT(!launch(text, text).ok());
  RC_ASSERT(records().empty());
}

}  // namespace
}  // namespace veltrix
