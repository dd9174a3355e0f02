#include "helper/desktop/desktop_settings.h"

#include <gmock/gmock.h>
#include <signal.h>

#include "tests/helper/desktop/desktop_fixture.h"

namespace veltrix {
namespace {

using ::testing::HasSubstr;
using namespace std::chrono_literals;

constexpr SettingAttempt kSwitch{"org.example.magnifier", "on"};

constexpr SettingAttempt number(double step) {
  return {"org.example.magnifier", "factor", step, -1, 20};
}

class DesktopSettingsTest : public testing::DesktopFixture {
 protected:
  DesktopSettingsTest() {
    // Keeps one value in a file of the schema's and the key's name.
    writeScript("bin/gsettings", R"sh(
      file="$HOME/$2.$3"
      [ -e "$file" ] || { echo "No such schema" >&2; exit 1; }
      case "$1" in
        get) /bin/cat "$file" ;;
        set) echo "$4" > "$file" ;;
        *) exit 9 ;;
      esac
    )sh");
  }
  void give(const std::string& setting, const std::string& value) const {
    testing::writeFile(home() + "/" + setting, value);
  }
  std::string value(const std::string& setting) const { return testing::readFile(home() + "/" + setting); }
  Status change(const SettingAttempt& attempt) {
    return outcomeOf([&](ProgramStarter::Exit ended) { fSettings.change(attempt, ended); });
  }

  ProgramStarter fStarter{fLoop.get(), journal()};
  DesktopSettings fSettings{fStarter, 20s};
};

TEST_F(DesktopSettingsTest, SwitchIsTurnedOver) {
  give("org.example.magnifier.on", "false\n");
  EXPECT_TRUE(change(kSwitch));
  EXPECT_EQ(value("org.example.magnifier.on"), "true\n");
  EXPECT_TRUE(change(kSwitch));
  EXPECT_EQ(value("org.example.magnifier.on"), "false\n");
}

TEST_F(DesktopSettingsTest, NumberIsMovedByItsStep) {
  give("org.example.magnifier.factor", "1.5\n");
  EXPECT_TRUE(change(number(0.25)));
  EXPECT_EQ(value("org.example.magnifier.factor"), "1.75\n");
  EXPECT_TRUE(change(number(-2)));
  EXPECT_EQ(value("org.example.magnifier.factor"), "-0.25\n");
}

TEST_F(DesktopSettingsTest, ChangesTakeTurns) {
  give("org.example.magnifier.factor", "1\n");
  int done = 0;
  for (int count = 0; count < 5; ++count) {
    fSettings.change(number(1), [&done](const Status& status) {
      EXPECT_TRUE(status);
      ++done;
    });
  }
  EXPECT_TRUE(runUntil([&done] { return done == 5; }));
  EXPECT_EQ(value("org.example.magnifier.factor"), "6\n");
}

TEST_F(DesktopSettingsTest, SettingThatDoesNotExistIsReported) {
  EXPECT_EQ(reasonOf(change(kSwitch)),
            "the setting org.example.magnifier on cannot be changed: gsettings ended with exit status 1");
}

TEST_F(DesktopSettingsTest, SettingOfAnotherTypeIsLeftAlone) {
  give("org.example.magnifier.on", "'a text'\n");
  EXPECT_THAT(reasonOf(change(kSwitch)), HasSubstr("cannot be changed: 'a text'"));
  EXPECT_EQ(value("org.example.magnifier.on"), "'a text'\n");
}

TEST_F(DesktopSettingsTest, MissingProgramIsReportedAndTheNextChangeIsMade) {
  std::filesystem::remove(fFolder / "bin/gsettings");
  EXPECT_THAT(reasonOf(change(kSwitch)), HasSubstr("gsettings is not installed"));
  EXPECT_THAT(reasonOf(change(kSwitch)), HasSubstr("gsettings is not installed"));
}

TEST_F(DesktopSettingsTest, ProgramThatDoesNotAnswerIsReported) {
  writeScript("bin/gsettings", "echo $$ > \"$HOME/pid\"\nexec /bin/sleep 1000\n");
  DesktopSettings impatient(fStarter, 200ms);
  const Status status = outcomeOf([&](ProgramStarter::Exit ended) { impatient.change(kSwitch, ended); });
  EXPECT_THAT(reasonOf(status), HasSubstr("no answer"));
  ASSERT_TRUE(runUntil([this] { return value("pid").ends_with('\n'); }));
  kill(std::stoi(value("pid")), SIGKILL);
  EXPECT_TRUE(runUntil([this] { return fStarter.running() == 0; }));
}

TEST(NextSettingValue, UnderstandsHowTypesArePrinted) {
  EXPECT_EQ(nextSettingValue("true\n", kSwitch), "false");
  EXPECT_EQ(nextSettingValue("uint32 5\n", number(1)), "6");
  EXPECT_EQ(nextSettingValue("-1", number(1)), "0");
  EXPECT_EQ(nextSettingValue("2.0\n", number(0.5)), "2.5");
}

TEST(NextSettingValue, StaysWithinItsBounds) {
  EXPECT_EQ(nextSettingValue("19.5", number(1)), "20");
  EXPECT_EQ(nextSettingValue("20", number(1)), "20");
  EXPECT_EQ(nextSettingValue("50", number(-1)), "20");
  EXPECT_EQ(nextSettingValue("-0.5", number(-1)), "-1");
}

TEST(NextSettingValue, AnythingElseHasNone) {
  for (const char* text : {"", "\n", "yes", "'true'", "1", "truefalse"}) {
    EXPECT_EQ(nextSettingValue(text, kSwitch), std::nullopt) << text;
  }
  for (const char* text : {"", "true", "1x", "[1, 2]", "inf", "nan", "1e400", "'1'"}) {
    EXPECT_EQ(nextSettingValue(text, number(1)), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace veltrix
