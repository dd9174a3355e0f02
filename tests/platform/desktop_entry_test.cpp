#include "platform/desktop_entry.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::vector<std::string> argumentsOf(const std::string& exec) {
  return readDesktopEntry("[Desktop Entry]\nExec=" + exec + "\n").arguments;
}

TEST(ReadDesktopEntry, TakesNameAndExecOfItsGroupOnly) {
  const DesktopEntry entry = readDesktopEntry(
      "# a comment\n[Before]\nName=Wrong\n\n[Desktop Entry]\nType=Application\nName = Right "
      "\nName[de]=Falsch\n"
      "#Name=Comment\nnonsense\n=\nExec=/bin/true\n[Desktop Action x]\nName=Action\nExec=/bin/false\n");
  EXPECT_EQ(entry.name, "Right");
  EXPECT_THAT(entry.arguments, ElementsAre("/bin/true"));
}

TEST(ReadDesktopEntry, LineEndsOfOtherSystemsAndAMissingLastOneAreAccepted) {
  const DesktopEntry entry = readDesktopEntry("[Desktop Entry]\r\nName=Thing\r\nExec=/bin/true");
  EXPECT_EQ(entry.name, "Thing");
  EXPECT_THAT(entry.arguments, ElementsAre("/bin/true"));
}

TEST(ReadDesktopEntry, LastOfTwoKeysCounts) {
  EXPECT_EQ(readDesktopEntry("[Desktop Entry]\nName=a\nName=b\n").name, "b");
}

TEST(ReadDesktopEntry, WithoutItsGroupThereIsNothing) {
  for (const char* text : {"", "\n", "Name=x\nExec=y\n", "[Other]\nName=x\n", "[Desktop Entry\nName=x\n"}) {
    const DesktopEntry entry = readDesktopEntry(text);
    EXPECT_EQ(entry.name, std::nullopt);
    EXPECT_THAT(entry.arguments, IsEmpty());
  }
}

TEST(ReadDesktopEntry, EscapesInValuesAreResolved) {
  EXPECT_EQ(readDesktopEntry("[Desktop Entry]\nName=\\sa\\tb\\nc\\rd\\\\e\\xf\\\n").name,
            " a\tb\nc\rd\\e\\xf\\");
}

TEST(ReadDesktopEntry, TakesWhatMenusWantToKnow) {
  const DesktopEntry entry = readDesktopEntry(
      "[Desktop Entry]\nType=Application\nName=Sums\nComment=Adds\\nup\nIcon=sums\nTryExec=/bin/sums\n"
      "Keywords=add;plus\\;minus;;\nOnlyShowIn=GNOME;KDE;\nNotShowIn=XFCE\nHidden=true\nNoDisplay=true\n"
      "DBusActivatable=true\n");
  EXPECT_EQ(entry.type, "Application");
  EXPECT_EQ(entry.comment, "Adds\nup");
  EXPECT_EQ(entry.icon, "sums");
  EXPECT_EQ(entry.tryExec, "/bin/sums");
  EXPECT_THAT(entry.keywords, ElementsAre("add", "plus;minus"));
  EXPECT_THAT(entry.onlyShowIn, ElementsAre("GNOME", "KDE"));
  EXPECT_THAT(entry.notShowIn, ElementsAre("XFCE"));
  EXPECT_TRUE(entry.hidden && entry.noDisplay && entry.busActivatable);
}

TEST(ReadDesktopEntry, TakesHowTheProgramWantsToRun) {
  const DesktopEntry entry = readDesktopEntry("[Desktop Entry]\nTerminal=true\nPath=/srv/a\\sb\n");
  EXPECT_TRUE(entry.terminal);
  EXPECT_EQ(entry.folder, "/srv/a b");
  EXPECT_FALSE(readDesktopEntry("[Desktop Entry]\nName=Sums\n").terminal);
}

TEST(ReadDesktopEntry, OnlyTheWordTrueIsTrue) {
  for (const char* value : {"false", "True", "1", "", "true false"}) {
    EXPECT_FALSE(readDesktopEntry(std::string("[Desktop Entry]\nHidden=") + value + "\n").hidden) << value;
  }
}

constexpr const char* kInManyLanguages =
    "[Desktop Entry]\nName[de_AT]=Servus\nName=Hello\nName[de]=Hallo\nName[sr@latin]=Zdravo\n"
    "Name[sr]=Здраво\nName[]=Nobody\nName[de=Broken\nKeywords=a\nKeywords[de]=b;c\n";

TEST(ReadDesktopEntry, TextsComeInTheLanguageThatSuitsBest) {
  const auto name = [](const char* language) { return readDesktopEntry(kInManyLanguages, language).name; };
  EXPECT_EQ(name(""), "Hello");
  EXPECT_EQ(name("C"), "Hello");
  EXPECT_EQ(name("fr_FR.UTF-8"), "Hello");
  EXPECT_EQ(name("de"), "Hallo");
  EXPECT_EQ(name("de_DE.UTF-8"), "Hallo");
  EXPECT_EQ(name("de_AT.UTF-8@euro"), "Servus");
  EXPECT_EQ(name("sr_RS.UTF-8"), "Здраво");
  EXPECT_EQ(name("sr_RS@latin"), "Zdravo");
  EXPECT_THAT(readDesktopEntry(kInManyLanguages, "de_DE").keywords, ElementsAre("b", "c"));
}

TEST(ReadDesktopEntry, LanguagesChangeNothingButTexts) {
  EXPECT_THAT(readDesktopEntry("[Desktop Entry]\nExec=/a\nExec[de]=/b\n", "de").arguments, ElementsAre("/a"));
}

TEST(Exec, IsSplitAtBlanksOutsideOfQuotes) {
  EXPECT_THAT(argumentsOf("/a/b  c \"d e\"f \"\""), ElementsAre("/a/b", "c", "d ef", ""));
}

TEST(Exec, QuotationResolvesItsFourCharacters) {
  EXPECT_THAT(argumentsOf(R"("a\\"b\\`c\\$d\\\\e")"), ElementsAre(R"(a"b`c$d\e)"));
  EXPECT_THAT(argumentsOf(R"("a\\zb")"), ElementsAre(R"(a\zb)"));
}

TEST(Exec, QuotationWithoutEndIsNotUnderstood) {
  EXPECT_THAT(argumentsOf("\"/a/b"), IsEmpty());
  EXPECT_THAT(argumentsOf("/a/b \"c"), IsEmpty());
  EXPECT_THAT(argumentsOf("\"a%\"b"), ElementsAre("ab"));
}

TEST(Exec, FieldCodesAreDroppedAndDoubledPercentIsOne) {
  EXPECT_THAT(argumentsOf("/a/50%%off %f --x=%U %"), ElementsAre("/a/50%off", "--x="));
}

TEST(WriteAutostartEntry, IsACompleteEntry) {
  const std::string text = writeAutostartEntry("VeltrixHelper", "/opt/VeltrixHelper.app/VeltrixHelper");
  EXPECT_EQ(text.substr(0, 16), "[Desktop Entry]\n");
  EXPECT_THAT(text, HasSubstr("\nType=Application\n"));
  EXPECT_THAT(text, HasSubstr("\nName=VeltrixHelper\n"));
  EXPECT_THAT(text, HasSubstr("\nExec=\"/opt/VeltrixHelper.app/VeltrixHelper\"\n"));
  EXPECT_THAT(text, HasSubstr("\nTryExec=/opt/VeltrixHelper.app/VeltrixHelper\n"));
}

TEST(WriteAutostartEntry, DoublesWhatQuotingAndFieldCodesNeed) {
  EXPECT_THAT(writeAutostartEntry("n", R"(/a"b\c$d%e)"), HasSubstr(R"(Exec="/a\\"b\\\\c\\$d%%e")"));
}

RC_GTEST_PROP(WriteAutostartEntry, EveryNameAndPathIsReadBack, ()) {
  const auto text = rc::gen::container<std::string>(rc::gen::suchThat(
      rc::gen::oneOf(rc::gen::arbitrary<char>(), rc::gen::elementOf(std::string(" \t\n\r\\\"`$%=;#[]'äs"))),
      [](char each) { return each != '\0'; }));
  const std::string name = *text;
  const std::string program = "/" + *text;
  const DesktopEntry entry = readDesktopEntry(writeAutostartEntry(name, program));
  RC_ASSERT(entry.arguments == std::vector<std::string>{program});
  RC_ASSERT(entry.name.has_value());
  RC_ASSERT(entry.name == name);
}

RC_GTEST_PROP(ReadDesktopEntry, AnyBytesAreReadWithoutHarm, (const std::string& bytes)) {
  readDesktopEntry(bytes);
  readDesktopEntry("[Desktop Entry]\nExec=" + bytes);
}

}  // namespace
}  // namespace veltrix
