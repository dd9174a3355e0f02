#include <sys/stat.h>

#include "platform/bundle.h"
#include "tests/ctl/ctl_test.h"

namespace veltrix {
namespace {

using ::testing::AllOf;
using testing::arrayOf;
using testing::dictionaryOf;
using testing::documentOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using testing::readFile;
using testing::readPlist;
using ::testing::StartsWith;
using testing::writeFile;
using testing::writePlist;

class CtlSettings : public testing::CtlTest {
 protected:
  // One entry of a kind, two of another.
  void writeSettings() {
    auto document = documentOf({entryOfSpeed(0x1020, 100), entryOfSpeed(0x2041, 200, 0x0107),
                                entryOfSpeed(0x2041, 300, 0x0100, 0x0106)});
    document.set("snippets", arrayOf({dictionaryOf({{"name", "Łódź"}, {"text", "a\nb"}})}));
    writePlist(fSettings, document);
  }

  int speedOnDisk(std::size_t index) {
    return entryIn(readPlist(fSettings), index).dictionaryFor("options").int32For("speed");
  }

  // A command that must leave the file as it is.
  void expectRefusal(const std::vector<std::string>& arguments, int exitCode, const std::string& reason) {
    expectUnchanged(
        arguments, exitCode,
        AllOf(StartsWith("veltrixctl: "), HasSubstr(reason), EndsWith("; nothing was changed\n")));
  }
};

TEST_F(CtlSettings, PathPrintsWhereTheFileIs) {
  expectDone({"settings", "path"}, fSettings + "\n");
  EXPECT_EQ(json({"settings", "path", "--json"}), fSettings);
}

TEST_F(CtlSettings, GetPrintsScalarsPlain) {
  writeSettings();
  expectDone({"settings", "get", "version"}, "2\n");
  expectDone({"settings", "get", "devices/0/options/accelerate"}, "true\n");
  expectDone({"settings", "get", "devices/0/options/acceleration"}, "1.5\n");
  expectDone({"settings", "get", "snippets/0/name"}, "Łódź\n");
  expectDone({"settings", "get", "snippets/0/text"}, "a\nb\n");
}

TEST_F(CtlSettings, GetTakesADeviceByIndexProductVersionOrName) {
  writeSettings();
  expectDone({"settings", "get", "devices/1/options/speed"}, "200\n");
  expectDone({"settings", "get", "devices/1020/options/speed"}, "100\n");
  expectDone({"settings", "get", "devices/0x1020/options/speed"}, "100\n");
  expectDone({"settings", "get", "devices/2041:0106/options/speed"}, "300\n");
  expectDone({"settings", "get", "devices/a1d0:2041:0203/options/speed"}, "200\n");
  expectDone({"settings", "get", "devices/crest POINTER/options/speed"}, "100\n");
}

TEST_F(CtlSettings, GetPrintsAContainerOneValueOnALine) {
  writeSettings();
  expectDone({"settings", "get", "devices/1020/options"},
             "devices/0/options/speed = 100\n"
             "devices/0/options/accelerate = true\n"
             "devices/0/options/acceleration = 1.5\n");
  expectDone({"settings", "get", "snippets"}, "snippets/0/name = \"Łódź\"\nsnippets/0/text = \"a\\nb\"\n");
}

TEST_F(CtlSettings, GetPrintsJson) {
  writeSettings();
  EXPECT_EQ(json({"settings", "get", "devices/0/options", "--json"}),
            nlohmann::json({{"speed", 100}, {"accelerate", true}, {"acceleration", 1.5}}));
  EXPECT_EQ(json({"--json", "settings", "get", "snippets/0/text"}), "a\nb");
}

TEST_F(CtlSettings, GetSaysWhatIsNotThere) {
  writeSettings();
  const auto missing = [&](const std::string& key) {
    return "veltrixctl: " + fSettings + ": there is no \"" + key + "\"\n";
  };
  expect({"settings", "get", "nothing"}, 1, "", missing("nothing"));
  expect({"settings", "get", "devices/0/options/none"}, 1, "", missing("devices/0/options/none"));
  expect({"settings", "get", "version/deeper"}, 1, "", missing("version/deeper"));
  expect({"settings", "get", "snippets/7"}, 1, "", missing("snippets/7"));
  expect({"settings", "get", "devices/8002/options"}, 1, "", HasSubstr("no entry for \"8002\""));
  expect({"settings", "get", "devices/skiffline"}, 2, "",
         HasSubstr("more than one entry: 1 Skiffline™ Trackball (2041, from 1.07), 2 Skiffline™ "
                   "Trackball (2041, 1.00 to 1.06)"));
  expect({"settings", "get", "devices/2041:xyz"}, 2, "", HasSubstr("not PRODUCT:VERSION"));
}

TEST_F(CtlSettings, ReadingDoesNotCreateAFile) {
  for (const auto& command : std::vector<std::vector<std::string>>{
           {"settings", "get", "version"}, {"settings", "show"}, {"settings", "check"}}) {
    expect(command, 1, "", AllOf(HasSubstr(fSettings), HasSubstr("No such file")));
  }
  EXPECT_FALSE(std::filesystem::exists(fHome));
}

TEST_F(CtlSettings, ShowPrintsEveryValueAndAHeadingForEachEntry) {
  writePlist(fSettings, documentOf({entryOfSpeed(0x1020, 100)}));
  expectDone({"settings", "show"},
             "version = 2\n"
             "# devices/0: Crest Pointer™ (1020, every version)\n"
             "devices/0/dict version = 1\n"
             "devices/0/driver enabled = true\n"
             "devices/0/device vendor id = 41424\n"
             "devices/0/device product id = 4128\n"
             "devices/0/device version min = 0\n"
             "devices/0/device version max = 0\n"
             "devices/0/options/speed = 100\n"
             "devices/0/options/accelerate = true\n"
             "devices/0/options/acceleration = 1.5\n"
             "devices/0/buttons/00/cmd = 1\n"
             "devices/0/buttons/00/mod = 0\n");
}

TEST_F(CtlSettings, ShowTakesAFileAndPrintsJson) {
  const auto path = fFolder / "other.plist";
  writePlist(path, documentOf({entryOfSpeed(0x1020, 100)}));
  const auto document = json({"settings", "show", path, "--json"});
  EXPECT_EQ(document["version"], 2);
  EXPECT_EQ(document["devices"][0]["options"]["speed"], 100);
}

TEST_F(CtlSettings, CheckFindsNothingInTheFactorySettings) {
  const std::string path = Bundle::standard().pathForResource("DefaultSettings", "plist");
  expectDone({"settings", "check", path}, path + ": no problems\n");
  EXPECT_EQ(json({"settings", "check", path, "--json"}),
            nlohmann::json({{"file", path}, {"valid", true}, {"problems", nlohmann::json::array()}}));
}

TEST_F(CtlSettings, CheckListsEachProblemWithItsPlace) {
  auto bad = entryOfSpeed(0x1020, 79);
  bad.set("buttons", dictionaryOf({{"7", testing::actionOf(1)}}));
  writePlist(fSettings, documentOf({bad}));
  expect({"settings", "check"}, 1,
         fSettings + ": devices/0/options/speed: 79 is outside 80 to 6400\n" + fSettings +
             ": devices/0/buttons/7: is no button: keys are two digits, 00 to 15\n" + fSettings +
             ": devices/0/buttons: none of the buttons 00 to 03 is the plain primary click\n",
         "");
  const auto problems = json({"settings", "check", "--json"})["problems"];
  ASSERT_EQ(problems.size(), 3U);
  EXPECT_EQ(problems[0]["place"], "devices/0/options/speed");
}

TEST_F(CtlSettings, CheckSaysWhereAFileBreaks) {
  const auto path = fFolder / "bad.plist";
  writeFile(path, "<plist version=\"1.0\">\n<dict>\n<key>a</key>\n");
  expect({"settings", "check", path}, 2, "",
         AllOf(StartsWith("veltrixctl: " + path + ": line "), HasSubstr("(offset ")));
  writeFile(path, "(1, 2)");
  expect({"settings", "check", path}, 2, "", HasSubstr("its root is no dictionary"));
}

TEST_F(CtlSettings, SetChangesOneValueThroughTheStore) {
  writeSettings();
  auto expected = readPlist(fSettings);
  expectDone({"settings", "set", "devices/2041:0107/options/speed", "500"}, "");
  EXPECT_EQ(speedOnDisk(0), 100);
  EXPECT_EQ(speedOnDisk(1), 500);
  EXPECT_EQ(speedOnDisk(2), 300);
  // What the factory settings have and the file had not comes with the first save.
  EXPECT_EQ(readPlist(fSettings).arrayFor("devices").count(), 6U);
}

TEST_F(CtlSettings, SetKeepsTypes) {
  writeSettings();
  const auto typeOf = [this](const char* key) {
    return readPlist(fSettings)
        .arrayFor("devices")
        .at(0)
        .asDictionary()
        .dictionaryFor("options")
        .get(key)
        .type();
  };
  expectDone({"settings", "set", "devices/0/options/accelerate", "no"}, "");
  EXPECT_EQ(typeOf("accelerate"), plist::Type::kBoolean);
  expectDone({"settings", "set", "devices/0/options/acceleration", "2"}, "");
  EXPECT_EQ(typeOf("acceleration"), plist::Type::kReal);
  expectDone({"settings", "set", "devices/0/options/slow keys", "0x0900"}, "");
  EXPECT_EQ(typeOf("slow keys"), plist::Type::kInteger);
  expectDone({"settings", "get", "devices/0/options/slow keys"}, "2304\n");
  expectDone({"settings", "set", "devices/0/buttons/00/label", "12"}, "");
  expectDone({"settings", "set", "snippets/0/text", "<&> \"ł\""}, "");
  expectDone({"settings", "get", "snippets/0/text"}, "<&> \"ł\"\n");
}

TEST_F(CtlSettings, SetRefusesAnotherType) {
  writeSettings();
  expectRefusal({"settings", "set", "devices/0/options/speed", "fast"}, 2,
                "devices/0/options/speed: \"fast\" is not an integer");
  expectRefusal({"settings", "set", "devices/0/options/speed", "400.5"}, 2, "is not an integer");
  expectRefusal({"settings", "set", "devices/0/options/accelerate", "maybe"}, 2,
                "\"maybe\" is not a boolean: true or false");
  expectRefusal({"settings", "set", "devices/0/options/acceleration", "1,5"}, 2, "\"1,5\" is not a number");
  expectRefusal({"settings", "set", "devices/0/options/acceleration", "nan"}, 2, "is not a number");
  expectRefusal({"settings", "set", "devices/0/options", "5"}, 2,
                "only single values can be set, and this is a dictionary");
}

TEST_F(CtlSettings, SetRefusesWhatARuleForbids) {
  writeSettings();
  expectRefusal({"settings", "set", "devices/0/options/speed", "79"}, 1, "79 is outside 80 to 6400");
  expectRefusal({"settings", "set", "devices/0/buttons/00/cmd", "2"}, 1, "plain primary click");
  expectRefusal({"settings", "set", "version", "1"}, 1, "1 is outside 2 to");
}

TEST_F(CtlSettings, SetRefusesKeysThatAreNoSettings) {
  writeSettings();
  expectRefusal({"settings", "set", "devices/0/options/spede", "400"}, 1, "there is no such setting");
  expectRefusal({"settings", "set", "devices/0", "1"}, 1, "there is no such setting");
  expectRefusal({"settings", "set", "devices/9/options/speed", "400"}, 1, "no entry for \"9\"");
  expectRefusal({"settings", "set", "devices/skiffline/options/speed", "400"}, 2, "more than one entry");
}

TEST_F(CtlSettings, SetMendsAValueOfTheWrongType) {
  auto bad = entryOfSpeed(0x1020, 100);
  bad.dictionaryFor("options").set("speed", "fast");
  writePlist(fSettings, documentOf({bad}));
  expectDone({"settings", "set", "devices/0/options/speed", "400"}, "");
  EXPECT_EQ(speedOnDisk(0), 400);
}

TEST_F(CtlSettings, SetBeginsWithTheFactorySettings) {
  expectDone({"settings", "set", "devices/1020/options/speed", "500"}, "");
  EXPECT_EQ(speedOnDisk(0), 500);
  EXPECT_EQ(readPlist(fSettings).arrayFor("snippets").count(), 10U);
}

TEST_F(CtlSettings, ChangingLeavesAnUnusableFileAlone) {
  writeFile(fSettings, "<plist>\n<dict>");
  for (const auto& command : std::vector<std::vector<std::string>>{{"settings", "set", "version", "3"},
                                                                   {"settings", "reset", "0"}}) {
    expect(command, 2, "", AllOf(HasSubstr(fSettings + ": line 2")));
    EXPECT_EQ(readFile(fSettings), "<plist>\n<dict>");
  }
  writePlist(fSettings, documentOf({}));
  expectRefusal({"settings", "set", "version", "3"}, 2, "\"devices\" must not be empty");
  EXPECT_EQ(testing::namesIn(fHome + "/Library/Preferences").size(), 1U);
}

TEST_F(CtlSettings, ChangingSaysWhyTheDiskTakesNoFile) {
  writeSettings();
  std::filesystem::create_directory(fHome + "/elsewhere");
  std::filesystem::remove(fSettings);
  std::filesystem::create_symlink("/proc/veltrix/none", fSettings);
  expect({"settings", "set", "devices/0/options/speed", "400"}, 1, "",
         AllOf(HasSubstr(fSettings), EndsWith("; the file is as it was\n")));
}

TEST_F(CtlSettings, ResetRestoresOneDevice) {
  writeSettings();
  expectDone({"settings", "reset", "2041:0107"}, "");
  EXPECT_EQ(speedOnDisk(0), 100);
  EXPECT_EQ(speedOnDisk(1), 400);
  EXPECT_EQ(speedOnDisk(2), 300);
  expectDone({"settings", "reset", "crest"}, "");
  EXPECT_EQ(speedOnDisk(0), 400);
  expectDone({"settings", "reset", "2"}, "");
  EXPECT_EQ(speedOnDisk(2), 400);
}

TEST_F(CtlSettings, ResetSaysWhenThereIsNothingToRestore) {
  writePlist(fSettings, documentOf({entryOfSpeed(0x7777, 100)}));
  expectRefusal({"settings", "reset", "7777"}, 1, "the factory settings have no entry for devices/0");
  expectRefusal({"settings", "reset", "99"}, 1, "no entry for \"99\"");
}

}  // namespace
}  // namespace veltrix
