#include "tests/ctl/ctl_test.h"

namespace veltrix {
namespace {

using ::testing::AllOf;
using testing::dictionaryOf;
using testing::documentOf;
using ::testing::EndsWith;
using testing::entryOf;
using ::testing::HasSubstr;
using testing::readFile;
using testing::readPlist;
using testing::writePlist;

// The commands over the rules: match, find, record, merge, convert.
class CtlRules : public testing::CtlTest {
 protected:
  CtlRules() {
    writePlist(fFile, documentOf({entryOf(0xA1D0, 0x1020), entryOf(0xA1D0, 0x2041, 0x0107), entryOf(0, 0)}));
  }

  std::vector<std::string> match(const std::string& product, const std::string& version) {
    return {"match", "--vendor", "A1D0", "--product", product, "--version", version, fFile};
  }

  std::string fFile = fFolder / "settings.plist";
  std::string fOut = fFolder / "out.plist";
};

TEST_F(CtlRules, MatchPrintsTheBestAndTheGlobalEntry) {
  expectDone(match("2041", "0107"), "best 1\nglobal 2\n");
  expectDone(match("0x2041", "0x106"), "best -1\nglobal 2\n");
  auto arguments = match("2041", "0107");
  arguments.emplace_back("--json");
  EXPECT_EQ(json(arguments), nlohmann::json({{"found", true}, {"best", 1}, {"global", 2}}));
}

TEST_F(CtlRules, MatchReadsTheUsersFileByDefault) {
  writePlist(fSettings, documentOf({entryOf(0xA1D0, 0x1022)}));
  expectDone({"match", "--vendor", "A1D0", "--product", "1022", "--version", "0"}, "best 0\nglobal -1\n");
}

TEST_F(CtlRules, MatchSaysWhenThereIsNoEntry) {
  writePlist(fFile, documentOf({entryOf(0xA1D0, 0x1020)}));
  expect(match("2041", "0107"), 1, "best -1\nglobal -1\n",
         "veltrixctl: " + fFile + ": no entry for A1D0:2041:0107\n");
}

TEST_F(CtlRules, MatchRefusesWhatIsNoId) {
  expect(match("12345", "0"), 2, "", HasSubstr("one to four hexadecimal digits"));
  expect(match("xyz", "0"), 2, "", HasSubstr("one to four hexadecimal digits"));
  expect({"match", "--vendor", "1"}, 2, "", HasSubstr("required"));
}

TEST_F(CtlRules, FindPrintsTheEntryAndThePageThatTheWindowShows) {
  expectDone({"find", "--device", "A1D0:2041:0107", fFile}, "index 1\ntab 3\n");
  const std::vector<std::string> two = {"find",     "--device",       "A1D0:2041:0107",
                                        "--device", "A1D0:1020:0100", fFile};
  expectDone(two, "index 1\ntab 3\n");
  auto preferring = two;
  preferring.insert(preferring.end(), {"--prefer", "1020"});
  expectDone(preferring, "index 0\ntab 2\n");
  preferring.emplace_back("--json");
  EXPECT_EQ(json(preferring), nlohmann::json({{"found", true}, {"index", 0}, {"tab", 2}}));
}

TEST_F(CtlRules, FindSaysWhenNothingFits) {
  expect({"find", "--device", "A1D0:9999:0107", fFile}, 1, "index 0\ntab 1\n",
         HasSubstr(fFile + ": no entry for these devices"));
}

TEST_F(CtlRules, FindRefusesWhatIsNoDevice) {
  expect({"find", "--device", "2041:0107", fFile}, 2, "",
         HasSubstr("\"2041:0107\" is not VENDOR:PRODUCT:VERSION"));
  expect({"find", "--device", "1:2:3", "--prefer", "zz", fFile}, 2, "",
         HasSubstr("\"zz\" is not a product id"));
  expect({"find", fFile}, 2, "", HasSubstr("--device"));
  std::vector<std::string> many = {"find", fFile};
  for (int i = 0; i < 17; ++i) {
    many.insert(many.end(), {"--device", "1:2:3"});
  }
  expect(many, 2, "", HasSubstr("at most 16 devices"));
}

std::string recordWith(const std::string& start) {
  return start + std::string(352 - start.size(), '0');
}

TEST_F(CtlRules, RecordPrintsTheBytes) {
  expectDone({"record", fFile, "0"}, "true " + recordWith("01ffff") + "\n");
  EXPECT_EQ(json({"record", fFile, "0", "--json"}),
            nlohmann::json({{"built", true}, {"record", recordWith("01ffff")}}));
  writePlist(fSettings, documentOf({entryOf(1, 2)}));
  expectDone({"record", "0"}, "true " + recordWith("01ffff") + "\n");
}

TEST_F(CtlRules, RecordTakesAnEntryToFallBackOn) {
  auto entry = entryOf(1, 2);
  entry.set("buttons", dictionaryOf({{"00", testing::actionOf(200)}}));
  auto fallback = entryOf(0, 0);
  fallback.set("buttons", dictionaryOf({{"00", testing::clickOf(2, 0x0100)}}));
  writePlist(fFile, documentOf({entry, fallback}));
  const std::string head = "01ffff00000000010000000000000000";
  expectDone({"record", fFile, "0"}, "true " + recordWith(head + "c800") + "\n");
  expectDone({"record", fFile, "0", "--fallback", "1"}, "true " + recordWith(head + "02000001") + "\n");
}

TEST_F(CtlRules, RecordOfAnotherLayoutVersionIsFalse) {
  auto entry = entryOf(1, 2);
  entry.set("dict version", 2);
  writePlist(fFile, documentOf({entry}));
  expect({"record", fFile, "0"}, 1, "false " + recordWith("00ffff") + "\n",
         HasSubstr("\"dict version\" is not 1"));
}

TEST_F(CtlRules, RecordRefusesWhatIsNoEntry) {
  expect({"record", fFile, "3"}, 1, "", "veltrixctl: " + fFile + ": there is no entry devices/3\n");
  expect({"record", fFile, "x"}, 2, "", HasSubstr("\"x\" is not an index"));
  expect({"record", fFile, "0", "--fallback", "9"}, 1, "", HasSubstr("there is no entry devices/9"));
  expect({"record"}, 2, "", HasSubstr("required"));
}

TEST_F(CtlRules, MergeAddsWhatTheUserLacks) {
  const auto user = fFolder / "user.plist";
  writePlist(user, documentOf({entryOf(7, 0x1020)}));
  expectDone({"merge", user, fFile, "-o", fOut}, "");
  const auto merged = readPlist(fOut).arrayFor("devices");
  ASSERT_EQ(merged.count(), 3U);
  EXPECT_EQ(merged.at(0).asDictionary().int32For("device vendor id"), 7);
  EXPECT_EQ(readPlist(user).arrayFor("devices").count(), 1U);
}

TEST_F(CtlRules, MergeRefusesADocumentThatNoProgramWouldUse) {
  const auto user = fFolder / "user.plist";
  writePlist(user, documentOf({}));
  expect({"merge", user, fFile, "-o", fOut}, 1, "",
         AllOf(HasSubstr(user), EndsWith("; nothing was written\n")));
  EXPECT_FALSE(std::filesystem::exists(fOut));
  expect({"merge", fFolder / "none", fFile, "-o", fOut}, 1, "", HasSubstr("No such file"));
  expect({"merge", fFile, user + "x", "-o", fOut}, 1, "", HasSubstr("No such file"));
}

TEST_F(CtlRules, ConvertGoesThereAndBack) {
  const auto binary = fFolder / "binary.plist";
  expectDone({"convert", fFile, "--to", "binary", "-o", binary}, "");
  EXPECT_EQ(readFile(binary).substr(0, 8), "bplist00");
  expectDone({"convert", binary, "--to", "xml", "-o", fOut}, "");
  EXPECT_EQ(readFile(fOut), readFile(fFile));
  expectDone({"convert", binary, "--to", "xml", "-o", binary}, "");
  EXPECT_EQ(readFile(binary), readFile(fFile));
}

TEST_F(CtlRules, ConvertTakesAnyRoot) {
  testing::writeFile(fFile, "(1, \"two\")");
  expectDone({"convert", fFile, "--to", "xml", "-o", fOut}, "");
  EXPECT_THAT(readFile(fOut), HasSubstr("<string>two</string>"));
}

TEST_F(CtlRules, ConvertSaysWhatIsWrongWithAFile) {
  testing::writeFile(fFile, "{ a = ; }");
  expect({"convert", fFile, "--to", "xml", "-o", fOut}, 2, "", HasSubstr(fFile + ": line 1 (offset "));
  testing::writeFile(fFile, std::string("bplist00") + std::string(40, '\xFF'));
  const auto run = ctl({"convert", fFile, "--to", "xml", "-o", fOut});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_THAT(run.errors, AllOf(HasSubstr(fFile + ": offset "), ::testing::Not(HasSubstr("line"))));
  EXPECT_FALSE(std::filesystem::exists(fOut));
}

TEST_F(CtlRules, ConvertSaysWhenTheResultCannotBeWritten) {
  expect({"convert", fFile, "--to", "xml", "-o", fFile + "/below"}, 1, "",
         AllOf(HasSubstr(fFile + "/below"), EndsWith("; nothing was written\n")));
}

TEST_F(CtlRules, WrongUsageEndsWithTwo) {
  for (const auto& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {"settings"},
                                             {"convert", fFile, "--to", "yaml", "-o", fOut},
                                             {"settings", "set", "version"}}) {
    const auto run = ctl(arguments);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, EndsWith("Try 'veltrixctl --help'.\n"));
  }
  expect({"nonsense"}, 2, "", HasSubstr("\"nonsense\" means nothing here"));
  expect({"devices", "extra"}, 2, "", HasSubstr("\"extra\" means nothing here"));
}

TEST_F(CtlRules, HelpIsOnStandardOutput) {
  for (const auto& arguments : std::vector<std::vector<std::string>>{
           {"--help"}, {"settings", "--help"}, {"settings", "get", "--help"}, {"find", "--help"}}) {
    const auto run = ctl(arguments);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.output, HasSubstr("Usage: "));
    EXPECT_EQ(run.errors, "");
  }
}

}  // namespace
}  // namespace veltrix
