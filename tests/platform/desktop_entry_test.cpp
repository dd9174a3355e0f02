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
