#include <gmock/gmock.h>

#include "tests/helper/desktop/launcher_fixture.h"
#include "tests/support/program_run.h"

// The launcher with the desktop's real programs.
namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class LauncherTools : public testing::LauncherFixture {
 protected:
  LauncherTools() {
    addProgram("viewer");
    addEntry("viewer", "Exec=viewer --show %u\nMimeType=text/plain;\n");
    testing::writeFile(home() + "/.config/mimeapps.list",
                       "[Default Applications]\ntext/plain=viewer.desktop\ninode/directory=viewer.desktop\n"
                       "x-scheme-handler/https=viewer.desktop\nx-scheme-handler/x-thing=viewer.desktop\n");
  }

 private:
  testing::ScopedEnvironment fPath{"PATH", (fFolder / "bin") + ":/usr/bin:/bin"};
  testing::ScopedEnvironment fDataFolders{"XDG_DATA_DIRS", "/usr/share"};
};

TEST_F(LauncherTools, FileIsOpenedByTheApplicationForItsType) {
  const std::string path = home() + "/a $(b) 'c' -d ä.txt";
  testing::writeFile(path, "text\n");
  EXPECT_TRUE(openItem(path));
  EXPECT_THAT(onlyRecord(), ElementsAre("viewer", "--show", path));
}

TEST_F(LauncherTools, FolderIsOpenedByTheApplicationForFolders) {
  EXPECT_TRUE(open(Place::kHome));
  EXPECT_THAT(onlyRecord(), ElementsAre("viewer", "--show", home()));
}

TEST_F(LauncherTools, AddressIsOpenedByTheApplicationForItsScheme) {
  for (const char* url : {"https://example.org/?a=$(b)&c=';d%20e#f", "x-thing:--help"}) {
    forgetRecords();
    EXPECT_TRUE(openUrl(url));
    EXPECT_THAT(onlyRecord(), ElementsAre("viewer", "--show", url));
  }
}

TEST_F(LauncherTools, BrowserIsTheOneThatOpensAddresses) {
  EXPECT_TRUE(open(Place::kBrowser));
  EXPECT_THAT(onlyRecord(), ElementsAre("viewer", "--show"));
}

class SettingTools : public LauncherTools {
 protected:
  SettingTools() {
    testing::writeFile(fFolder / "schemas/org.example.magnifier.gschema.xml", R"xml(
      <schemalist><schema id="org.example.magnifier" path="/org/example/magnifier/">
        <key name="on" type="b"><default>false</default></key>
        <key name="factor" type="d"><range min="1" max="3"/><default>1.5</default></key>
        <key name="count" type="u"><default>5</default></key>
      </schema></schemalist>)xml");
    const auto made = testing::runProgram({"glib-compile-schemas", fFolder / "schemas"}, {});
    EXPECT_EQ(made.exitCode, 0) << made.errors;
  }
  std::string value(const std::string& key) const {
    return testing::runProgram({"gsettings", "get", "org.example.magnifier", key}, {}).output;
  }
  Status change(const char* key, double step) {
    return outcomeOf([&](Ended ended) {
      fLauncher->change({"org.example.magnifier", key, step, -10, 10}, ended);
    });
  }

 private:
  testing::ScopedEnvironment fSchemas{"GSETTINGS_SCHEMA_DIR", fFolder / "schemas"};
  testing::ScopedEnvironment fBackend{"GSETTINGS_BACKEND", "keyfile"};
};

TEST_F(SettingTools, SwitchAndNumbersOfEveryTypeAreChanged) {
  EXPECT_TRUE(change("on", 0));
  EXPECT_EQ(value("on"), "true\n");
  EXPECT_TRUE(change("factor", 0.25));
  EXPECT_EQ(value("factor"), "1.75\n");
  EXPECT_TRUE(change("count", -1));
  EXPECT_EQ(value("count"), "uint32 4\n");
}

TEST_F(SettingTools, WhatTheSchemaDoesNotAllowIsReported) {
  EXPECT_THAT(reasonOf(change("factor", -4)), HasSubstr("the setting org.example.magnifier factor"));
  EXPECT_EQ(value("factor"), "1.5\n");
  EXPECT_FALSE(change("gone", 0));
  EXPECT_FALSE(outcomeOf([&](Ended ended) { fLauncher->change({"org.example.gone", "on"}, ended); }));
}

}  // namespace
}  // namespace veltrix
