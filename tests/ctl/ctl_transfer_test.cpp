#include "tests/ctl/ctl_test.h"
#include "tests/support/file_failures.h"

// Settings that leave or enter as files: information, export, import.
namespace veltrix {
namespace {

using ::testing::AllOf;
using testing::arrayOf;
using testing::dictionaryOf;
using testing::documentOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using testing::namesIn;
using testing::readFile;
using testing::readPlist;
using testing::writeFile;
using testing::writePlist;

class CtlTransfer : public testing::CtlTest {
 protected:
  static plist::Dictionary document(int speed) {
    auto document = documentOf({entryOfSpeed(0x1020, speed)});
    document.set("snippets", arrayOf());
    return document;
  }

  static int speedIn(const plist::Dictionary& document) {
    return entryIn(document, 0).dictionaryFor("options").int32For("speed");
  }

  std::set<std::string> filesBesideSettings() const {
    return namesIn(std::filesystem::path(fSettings).parent_path().string());
  }

  // Writes the document that is imported.
  void offer(const plist::Dictionary& document) const { writePlist(fOther, document); }

  // An import that must leave everything as it is.
  void expectRefusal(int exitCode, const ::testing::Matcher<std::string>& errors) {
    expectUnchanged({"settings", "import", fOther}, exitCode, errors);
    EXPECT_EQ(filesBesideSettings().size(), 1U);
  }

  std::string fOther = fFolder / "other.plist";
};

using CtlInformation = CtlTransfer;

TEST_F(CtlInformation, PrintsTheSettingsAndTheReport) {
  writePlist(fSettings, document(500));
  const auto run = ctl({"information"});
  EXPECT_EQ(run.exitCode, 0);
  const auto root = plist::read(run.output).value().root.asDictionary();
  EXPECT_EQ(speedIn(root), 500);
  EXPECT_THAT(root.dictionaryFor("support").keys(),
              ::testing::ElementsAre("date", "driver version", "mac os version", "architecture",
                                     "connected devices"));
  EXPECT_THAT(root.dictionaryFor("support").stringFor("date"),
              ::testing::MatchesRegex("20[0-9]{2}-[0-9]{2}-[0-9]{2} [0-9:]{8} [+]0000"));
}

TEST_F(CtlInformation, SaysThatNoTrackballsCouldBeAskedFor) {
  writePlist(fSettings, document(500));
  EXPECT_THAT(ctl({"information"}).errors, EndsWith("; the report names no trackballs\n"));
}

TEST_F(CtlInformation, GoesIntoAFileAndReplacesOneThatIsThere) {
  writePlist(fSettings, document(500));
  writeFile(fOther, "old");
  const auto before = readFile(fSettings);
  const auto run = ctl({"information", "-o", fOther});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(speedIn(readPlist(fOther)), 500);
  EXPECT_EQ(readFile(fSettings), before);
}

TEST_F(CtlInformation, SaysWhyAFileCannotBeWritten) {
  writePlist(fSettings, document(500));
  writeFile(fFolder / "file", "");
  const auto run = ctl({"information", "-o", fFolder / "file/other.plist"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.errors, AllOf(HasSubstr(fFolder / "file"), EndsWith("; nothing was written\n")));
}

TEST_F(CtlInformation, TellsTheFactorySettingsAndCreatesNoFile) {
  const auto report = json({"information", "--json"});
  EXPECT_EQ(report["devices"].size(), 6U);
  EXPECT_EQ(report["support"]["connected devices"], nlohmann::json::array());
  EXPECT_FALSE(std::filesystem::exists(fHome));
}

TEST_F(CtlInformation, SaysWhereTheSettingsBreak) {
  writeFile(fSettings, "<plist>\n<dict>");
  EXPECT_EQ(ctl({"information"}).exitCode, 2);
  EXPECT_THAT(fLast.errors, HasSubstr(fSettings + ": line 2"));
  EXPECT_EQ(readFile(fSettings), "<plist>\n<dict>");
}

using CtlExport = CtlTransfer;

TEST_F(CtlExport, WritesTheSettingsInForce) {
  writePlist(fSettings, document(500));
  expectDone({"settings", "export", fOther}, "");
  EXPECT_EQ(speedIn(readPlist(fOther)), 500);
  // The entries that only the factory settings have are in force too.
  EXPECT_EQ(readPlist(fOther).arrayFor("devices").count(), 6U);
  EXPECT_EQ(readPlist(fSettings).arrayFor("devices").count(), 1U);
  expectDone({"settings", "check", fOther}, fOther + ": no problems\n");
}

TEST_F(CtlExport, WritesTheFactorySettingsWhileThereIsNoFile) {
  expectDone({"settings", "export", fOther}, "");
  EXPECT_EQ(readPlist(fOther).arrayFor("devices").count(), 6U);
  EXPECT_FALSE(std::filesystem::exists(fHome));
}

TEST_F(CtlExport, ReplacesAFileOnlyByForce) {
  writePlist(fSettings, document(500));
  writeFile(fOther, "mine");
  expect({"settings", "export", fOther}, 1, "",
         "veltrixctl: " + fOther + ": is there already, and --force was not given; nothing was written\n");
  EXPECT_EQ(readFile(fOther), "mine");
  expectDone({"settings", "export", fOther, "--force"}, "");
  EXPECT_EQ(speedIn(readPlist(fOther)), 500);
}

TEST_F(CtlExport, RefusesTheSettingsFileItself) {
  writePlist(fSettings, document(500));
  std::filesystem::create_symlink(fSettings, fOther);
  expect({"settings", "export", fOther, "--force"}, 2, "", HasSubstr("is the settings file itself"));
}

TEST_F(CtlExport, SaysWhyAFileCannotBeWritten) {
  writePlist(fSettings, document(500));
  writeFile(fFolder / "file", "");
  expect({"settings", "export", fFolder / "file/other.plist"}, 1, "",
         AllOf(HasSubstr(fFolder / "file"), EndsWith("; nothing was written\n")));
}

TEST_F(CtlExport, SaysWhereTheSettingsBreak) {
  writeFile(fSettings, "<plist>\n<dict>");
  expect({"settings", "export", fOther}, 2, "", HasSubstr(fSettings + ": line 2"));
  EXPECT_FALSE(std::filesystem::exists(fOther));
}

using CtlImport = CtlTransfer;

TEST_F(CtlImport, TakesTheFileListsTheChangesAndKeepsACopy) {
  writePlist(fSettings, document(500));
  const auto before = readFile(fSettings);
  auto other = document(800);
  other.set("snippets", arrayOf({dictionaryOf({{"name", "Łódź"}, {"text", "a\nb"}})}));
  other.arrayFor("devices").at(0).asDictionary().dictionaryFor("options").remove("acceleration");
  offer(other);
  const std::string copy = fSettings + ".before-import";
  expectDone({"settings", "import", fOther},
             "devices/0/options/speed: 500 -> 800\n"
             "devices/0/options/acceleration: 1.5 -> (none)\n"
             "snippets/0/name: (none) -> \"Łódź\"\n"
             "snippets/0/text: (none) -> \"a\\nb\"\n"
             "Changed " +
                 fSettings + "; the old settings are kept in " + copy + ".\n");
  EXPECT_EQ(speedIn(readPlist(fSettings)), 800);
  EXPECT_EQ(readPlist(fSettings).arrayFor("snippets").count(), 1U);
  EXPECT_EQ(readFile(copy), before);
}

TEST_F(CtlImport, CopiesAreNumbered) {
  for (const int speed : {500, 600, 700}) {
    offer(document(speed));
    writePlist(fSettings, document(speed - 100));
    EXPECT_EQ(ctl({"settings", "import", fOther}).exitCode, 0) << fLast.errors;
  }
  const std::string copy = fSettings + ".before-import";
  EXPECT_EQ(speedIn(readPlist(copy)), 400);
  EXPECT_EQ(speedIn(readPlist(copy + ".2")), 500);
  EXPECT_EQ(speedIn(readPlist(copy + ".3")), 600);
}

TEST_F(CtlImport, DryRunChangesNothing) {
  writePlist(fSettings, document(500));
  offer(document(800));
  const auto before = readFile(fSettings);
  expectDone({"settings", "import", fOther, "--dry-run"},
             "devices/0/options/speed: 500 -> 800\nNothing was changed.\n");
  EXPECT_EQ(readFile(fSettings), before);
  EXPECT_EQ(filesBesideSettings().size(), 1U);
}

TEST_F(CtlImport, DryRunCreatesNoFile) {
  offer(document(800));
  EXPECT_THAT(ctl({"settings", "import", fOther, "--dry-run"}).output,
              AllOf(HasSubstr("devices/0/options/speed: 400 -> 800\n"), EndsWith("Nothing was changed.\n")));
  EXPECT_FALSE(std::filesystem::exists(fHome));
}

TEST_F(CtlImport, WithoutAFileThereIsNothingToKeep) {
  offer(document(800));
  EXPECT_THAT(ctl({"settings", "import", fOther}).output, EndsWith("Changed " + fSettings + ".\n"));
  EXPECT_EQ(speedIn(readPlist(fSettings)), 800);
  EXPECT_EQ(filesBesideSettings().size(), 1U);
}

TEST_F(CtlImport, SettingsThatAreInForceChangeNothing) {
  writePlist(fSettings, document(500));
  EXPECT_EQ(ctl({"settings", "export", fOther}).exitCode, 0);
  expectDone({"settings", "import", fOther}, "These are the settings in force; nothing was changed.\n");
  EXPECT_EQ(filesBesideSettings().size(), 1U);
}

TEST_F(CtlImport, PrintsJson) {
  writePlist(fSettings, document(500));
  offer(document(800));
  const nlohmann::json changes = {{{"place", "devices/0/options/speed"}, {"old", 500}, {"new", 800}}};
  EXPECT_EQ(
      json({"settings", "import", fOther, "--dry-run", "--json"}),
      nlohmann::json({{"file", fSettings}, {"changed", false}, {"changes", changes}, {"copy", nullptr}}));
  EXPECT_EQ(json({"settings", "import", fOther, "--json"}),
            nlohmann::json({{"file", fSettings},
                            {"changed", true},
                            {"changes", changes},
                            {"copy", fSettings + ".before-import"}}));
}

TEST_F(CtlImport, TakesTheSettingsOutOfAReport) {
  writePlist(fSettings, document(500));
  EXPECT_EQ(ctl({"information", "-o", fOther}).exitCode, 0);
  writePlist(fSettings, document(800));
  expectDone({"settings", "import", fOther, "--dry-run"},
             "devices/0/options/speed: 800 -> 500\nNothing was changed.\n");
  EXPECT_EQ(ctl({"settings", "import", fOther}).exitCode, 0);
  EXPECT_FALSE(readPlist(fSettings).contains("support"));
}

TEST_F(CtlImport, RefusesSettingsWithProblems) {
  writePlist(fSettings, document(500));
  auto bad = document(79);
  bad.arrayFor("devices").at(0).asDictionary().set("buttons", dictionaryOf());
  offer(bad);
  expectRefusal(1, "veltrixctl: " + fOther + ": devices/0/options/speed: 79 is outside 80 to 6400\n" +
                       "veltrixctl: " + fOther +
                       ": devices/0/buttons: none of the buttons 00 to 03 is the plain primary click\n" +
                       "veltrixctl: " + fOther + ": cannot serve as settings; nothing was changed\n");
  offer(documentOf({}));
  expectRefusal(1, HasSubstr("cannot serve as settings"));
}

TEST_F(CtlImport, SaysWhatIsWrongWithTheFile) {
  writePlist(fSettings, document(500));
  writeFile(fOther, "<plist>\n<dict>");
  expectRefusal(2, HasSubstr(fOther + ": line 2"));
  writeFile(fOther, "(1, 2)");
  expectRefusal(2, HasSubstr("its root is no dictionary"));
  std::filesystem::remove(fOther);
  expectRefusal(1, AllOf(HasSubstr(fOther), HasSubstr("No such file")));
}

TEST_F(CtlImport, LeavesAnUnusableFileAlone) {
  writeFile(fSettings, "<plist>\n<dict>");
  offer(document(800));
  expectRefusal(2, HasSubstr(fSettings + ": line 2"));
}

TEST_F(CtlImport, SaysWhyTheDiskTakesNoFileAndKeepsNoCopyThen) {
  writePlist(fSettings, document(500));
  offer(document(800));
  // Room for the copy, and not for the new settings with all that the factory adds.
  const testing::ScopedFileSizeLimit limit(4096);
  expectRefusal(1, AllOf(HasSubstr(fSettings), EndsWith("; the file is as it was\n")));
}

TEST_F(CtlImport, SaysWhyNoCopyCanBeKept) {
  writePlist(fSettings, document(500));
  offer(document(800));
  const testing::ScopedFileSizeLimit limit(700);
  expectRefusal(
      1, AllOf(HasSubstr("no copy of the old settings could be kept"), EndsWith("; nothing was changed\n")));
}

}  // namespace
}  // namespace veltrix
