#include "helper/desktop/application_starter.h"

#include <gmock/gmock.h>
#include <systemd/sd-bus.h>

#include "helper/commands/command_table.h"
#include "platform/application_service.h"
#include "platform/session_bus.h"
#include "tests/helper/desktop/desktop_fixture.h"
#include "tests/support/private_bus.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using namespace std::chrono_literals;

class ApplicationStarterTest : public testing::DesktopFixture {
 protected:
  static InstalledApplication application(const std::string& identifier) {
    return installedApplication(identifier, standardApplicationSearch()).value();
  }
  Status start(const InstalledApplication& application, std::uint8_t desktop = kOnOther,
               sd_bus* bus = nullptr) {
    ApplicationStarter starter(fStarter, bus, desktop);
    return outcomeOf([&](ProgramStarter::Exit ended) { starter.start(application, ended); });
  }

  ProgramStarter fStarter{fLoop.get(), journal()};
};

TEST_F(ApplicationStarterTest, ProgramOfAnEntryGetsItsArguments) {
  addProgram("sums");
  addEntry("sums", "Exec=sums --new \"a b\" %U\n");
  EXPECT_TRUE(start(application("sums")));
  EXPECT_THAT(onlyRecord(), ElementsAre("sums", "--new", "a b"));
}

TEST_F(ApplicationStarterTest, ProgramRunsInTheFolderThatItsEntryNames) {
  writeScript("bin/sums", "pwd\n");
  addEntry("sums", "Exec=sums\nPath=" + (fFolder / "etc") + "\n");
  EXPECT_TRUE(start(application("sums")));
  EXPECT_TRUE(runUntil([this] { return journalText() == (fFolder / "etc") + "\n"; }));
}

TEST_F(ApplicationStarterTest, ProgramForATerminalRunsInTheDesktops) {
  addProgram("konsole");
  addProgram("xterm");
  addEntry("top", "Exec=top -d 1\nTerminal=true\n");
  EXPECT_TRUE(start(application("top"), kOnPlasma));
  EXPECT_THAT(onlyRecord(), ElementsAre("konsole", "-e", "top", "-d", "1"));
}

TEST_F(ApplicationStarterTest, WithoutATerminalThereIsAReason) {
  addEntry("top", "Exec=top\nTerminal=true\n");
  EXPECT_EQ(reasonOf(start(application("top"))), "there is no terminal for top");
}

TEST_F(ApplicationStarterTest, WithoutABusTheProgramServes) {
  addProgram("sums");
  addEntry("org.example.Sums", "Exec=sums\nDBusActivatable=true\n");
  EXPECT_TRUE(start(application("org.example.Sums")));
  EXPECT_THAT(onlyRecord(), ElementsAre("sums"));
  addEntry("org.example.Sums", "DBusActivatable=true\n");
  EXPECT_THAT(reasonOf(start(application("org.example.Sums"))), HasSubstr("there is no bus"));
}

// Started while PATH still leads to its program.
struct WithBus {
  testing::PrivateBus fBus;
};

class ActivatableApplication : protected WithBus, public ApplicationStarterTest {
 protected:
  ActivatableApplication() {
    addProgram("sums");
    Result<BusHandle> bus = openSessionBus(fBus.address(), std::chrono::steady_clock::now() + 20s);
    EXPECT_TRUE(bus.ok());
    fConnection = std::move(bus.value());
    EXPECT_GE(sd_bus_attach_event(fConnection.get(), fLoop.get(), SD_EVENT_PRIORITY_NORMAL), 0);
  }
  ~ActivatableApplication() override { sd_bus_detach_event(fConnection.get()); }

  BusHandle fConnection;
};

TEST_F(ActivatableApplication, IsAskedToComeToTheFront) {
  addEntry("org.example.Sums", "Exec=sums\nDBusActivatable=true\n");
  ApplicationService sums("org.example.Sums", fBus.address());
  ASSERT_EQ(sums.start({}), ApplicationInstance::kOnly);
  int activations = 0;
  sums.setActivateHandler([&activations](const Activation& activation) {
    EXPECT_EQ(activation.token, "");
    ++activations;
  });
  ApplicationStarter starter(fStarter, fConnection.get(), kOnOther);
  std::optional<Status> outcome;
  starter.start(application("org.example.Sums"), [&outcome](const Status& status) { outcome = status; });
  EXPECT_TRUE(runUntil([&] { return sums.process() && outcome.has_value(); }));
  EXPECT_TRUE(outcome && outcome->ok());
  EXPECT_EQ(activations, 1);
  EXPECT_THAT(records(), IsEmpty());
}

TEST_F(ActivatableApplication, ThatTheBusDoesNotKnowIsStartedByItsProgram) {
  addEntry("org.example.Sums", "Exec=sums\nDBusActivatable=true\n");
  EXPECT_TRUE(start(application("org.example.Sums"), kOnOther, fConnection.get()));
  EXPECT_THAT(onlyRecord(), ElementsAre("sums"));
}

TEST_F(ActivatableApplication, WithoutAProgramIsReportedWhenTheBusDoesNotKnowIt) {
  addEntry("org.example.Sums", "DBusActivatable=true\n");
  EXPECT_THAT(reasonOf(start(application("org.example.Sums"), kOnOther, fConnection.get())),
              HasSubstr("cannot activate org.example.Sums: "));
}

TEST_F(ActivatableApplication, WhoseIdentifierIsNoNameOnTheBusIsStartedByItsProgram) {
  addEntry("sums", "Exec=sums\nDBusActivatable=true\n");
  EXPECT_TRUE(start(application("sums"), kOnOther, fConnection.get()));
  EXPECT_THAT(onlyRecord(), ElementsAre("sums"));
}

TEST_F(ActivatableApplication, ThatDoesNotAnswerDelaysNothing) {
  addEntry("org.example.Sums", "Exec=sums\nDBusActivatable=true\n");
  ApplicationService sums("org.example.Sums", fBus.address());
  ASSERT_EQ(sums.start({}), ApplicationInstance::kOnly);
  bool told = false;
  {
    ApplicationStarter starter(fStarter, fConnection.get(), kOnOther);
    starter.start(application("org.example.Sums"), [&told](const Status&) { told = true; });
    EXPECT_TRUE(start([] {
      InstalledApplication other;
      other.name = "other";
      other.arguments = {"sums", "other"};
      return other;
    }()));
    EXPECT_THAT(onlyRecord(), ElementsAre("sums", "other"));
  }
  sums.process();  // answers when nobody waits any more
  EXPECT_FALSE(runUntil([&told] { return told; }, 100ms));
}

}  // namespace
}  // namespace veltrix
