#include "helper/desktop/item_opener.h"

#include <gmock/gmock.h>
#include <signal.h>

#include "tests/helper/desktop/desktop_fixture.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;
using namespace std::chrono_literals;

class ItemOpenerTest : public testing::DesktopFixture {
 protected:
  Status open(const std::string& item, std::chrono::microseconds grace = 20s) {
    const ItemOpener opener(fStarter, grace);
    return outcomeOf([&](ProgramStarter::Exit ended) { opener.open(item, ended); });
  }
  ProgramStarter fStarter{fLoop.get(), journal()};
};

TEST_F(ItemOpenerTest, ProgramWithoutAShellComesFirst) {
  addProgram("gio");
  addProgram("xdg-open");
  EXPECT_TRUE(open("/a b"));
  EXPECT_THAT(onlyRecord(), ElementsAre("gio", "open", "/a b"));
}

TEST_F(ItemOpenerTest, OtherOneServesWhereTheFirstIsMissingOrFails) {
  addProgram("xdg-open");
  EXPECT_TRUE(open("/a"));
  EXPECT_THAT(onlyRecord(), ElementsAre("xdg-open", "/a"));
  forgetRecords();
  addProgram("gio", "exit 2\n");
  EXPECT_TRUE(open("/a"));
  EXPECT_THAT(records(),
              UnorderedElementsAre(ElementsAre("gio", "open", "/a"), ElementsAre("xdg-open", "/a")));
}

TEST_F(ItemOpenerTest, ReasonSaysWhatCouldNotBeOpened) {
  EXPECT_EQ(reasonOf(open("/a")), "cannot open /a: neither gio nor xdg-open is installed");
  addProgram("gio", "exit 2\n");
  EXPECT_EQ(reasonOf(open("/a\nb")), "cannot open /a?b: gio ended with exit status 2");
  addProgram("xdg-open", "exit 3\n");
  EXPECT_EQ(reasonOf(open("/a")), "cannot open /a: xdg-open ended with exit status 3");
}

TEST_F(ItemOpenerTest, OpenerThatStaysHasOpenedTheItem) {
  addProgram("gio", "echo $$; exec /bin/sleep 1000\n");
  addProgram("xdg-open");
  EXPECT_TRUE(open("/a", 200ms));
  ASSERT_TRUE(runUntil([this] { return !journalText().empty(); }));
  kill(std::stoi(journalText()), SIGTERM);
  EXPECT_TRUE(runUntil([this] { return fStarter.running() == 0; }));
  EXPECT_EQ(records().size(), 1U);  // its end, however late, opens nothing again
}

}  // namespace
}  // namespace veltrix
