#include "helper/desktop/problem_notice.h"

#include <gmock/gmock.h>
#include <systemd/sd-bus.h>

#include "tests/helper/desktop/loop_runner.h"
#include "tests/support/private_bus.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;

// A desktop that shows notifications: remembers them, and numbers them as they come.
struct Desktop {
  std::vector<std::string> shown;
  std::uint32_t last = 40;
};

int takeNotice(sd_bus_message* call, void* desktop, sd_bus_error* /*error*/) {
  const char* application = nullptr;
  const char* icon = nullptr;
  const char* title = nullptr;
  const char* text = nullptr;
  std::uint32_t replaced = 0;
  if (sd_bus_message_is_method_call(call, "org.freedesktop.Notifications", "Notify") <= 0 ||
      sd_bus_message_read(call, "susss", &application, &replaced, &icon, &title, &text) < 0) {
    return 0;
  }
  auto* const self = static_cast<Desktop*>(desktop);
  self->shown.push_back(std::to_string(replaced) + " " + title + ": " + text);
  return sd_bus_reply_method_return(call, "u", ++self->last);
}

class ProblemNoticeTest : public ::testing::Test {
 protected:
  BusHandle connect() {
    auto bus = openSessionBus(fBus.address(), std::chrono::steady_clock::now() + std::chrono::seconds(10));
    EXPECT_TRUE(bus);
    sd_bus_attach_event(bus.value().get(), fLoop.get(), SD_EVENT_PRIORITY_NORMAL);
    return std::move(bus.value());
  }
  void startDesktop() {
    fShower = connect();
    ASSERT_GE(
        sd_bus_add_object(fShower.get(), nullptr, "/org/freedesktop/Notifications", takeNotice, &fDesktop),
        0);
    ASSERT_GE(sd_bus_request_name(fShower.get(), "org.freedesktop.Notifications", 0), 0);
  }
  void showAndServe(const char* text) {
    const std::size_t before = fDesktop.shown.size();
    fNotice.show("Title", text);
    EXPECT_TRUE(fLoop.runUntil([&] { return fDesktop.shown.size() > before; }));
    sd_event_run(fLoop.get(), 100'000);  // the answer
  }

  testing::LoopRunner fLoop;
  testing::PrivateBus fBus;
  BusHandle fConnection = connect();
  BusHandle fShower;
  Desktop fDesktop;
  ProblemNotice fNotice{fLoop.get(), fConnection.get()};
};

TEST_F(ProblemNoticeTest, LaterOneTakesThePlaceOfTheFormer) {
  startDesktop();
  showAndServe("one");
  showAndServe("two");
  EXPECT_THAT(fDesktop.shown, ElementsAre("0 Title: one", "41 Title: two"));
}

TEST_F(ProblemNoticeTest, TextIsNoMarkup) {
  startDesktop();
  showAndServe("<b>a & b</b>");
  EXPECT_THAT(fDesktop.shown, ElementsAre("0 Title: &lt;b>a &amp; b&lt;/b>"));
}

TEST_F(ProblemNoticeTest, NobodyWhoShowsItIsNoMatter) {
  for (int i = 0; i < 10; ++i) fNotice.show("Title", "text");
  startDesktop();
  EXPECT_TRUE(fLoop.runUntil([&] {
    fNotice.show("Title", "again");
    sd_event_run(fLoop.get(), 10'000);
    return !fDesktop.shown.empty();
  }));
  EXPECT_EQ(fDesktop.shown.front(), "0 Title: again");
}

}  // namespace
}  // namespace veltrix
