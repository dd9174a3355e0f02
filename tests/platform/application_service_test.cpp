#include "platform/application_service.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <cstdlib>
#include <thread>

#include "tests/support/environment.h"
#include "tests/support/private_bus.h"

namespace veltrix::testing {
namespace {

constexpr const char* kName = "com.aldmoor.ApplicationUnderTest";

class ApplicationServiceTest : public ::testing::Test {
 protected:
  // Answers calls until one has asked for the window.
  static Activation serveUntilActivated(ApplicationService* service) {
    Activation seen;
    bool activated = false;
    service->setActivateHandler([&](const Activation& activation) {
      seen = activation;
      activated = true;
    });
    while (!activated) {
      pollfd readable{service->descriptor(), POLLIN, 0};
      if (!service->process() || (!activated && poll(&readable, 1, 5000) == 0)) {
        ADD_FAILURE() << "nobody asked for the window";
        break;
      }
    }
    service->setActivateHandler({});
    return seen;
  }

  PrivateBus bus;
};

TEST_F(ApplicationServiceTest, TheFirstStartHasTheName) {
  ApplicationService first(kName, bus.address());
  EXPECT_EQ(first.descriptor(), -1);
  EXPECT_EQ(first.start({}), ApplicationInstance::kOnly);
  EXPECT_GE(first.descriptor(), 0);
  EXPECT_TRUE(first.process());
}

TEST_F(ApplicationServiceTest, ASecondStartHandsOverWithWhatTheDesktopGaveIt) {
  ApplicationService first(kName, bus.address());
  ASSERT_EQ(first.start({}), ApplicationInstance::kOnly);
  ApplicationInstance outcome = ApplicationInstance::kUnknown;
  int descriptor = 0;
  std::thread later([&] {
    ApplicationService second(kName, bus.address());
    outcome = second.start({"a token", "an id"});
    descriptor = second.descriptor();
  });
  const Activation seen = serveUntilActivated(&first);
  later.join();
  EXPECT_EQ(outcome, ApplicationInstance::kHandedOver);
  EXPECT_EQ(descriptor, -1);
  EXPECT_EQ(seen.token, "a token");
  EXPECT_EQ(seen.startupId, "an id");
}

TEST_F(ApplicationServiceTest, TheNameIsFreeAgainAfterTheEnd) {
  { EXPECT_EQ(ApplicationService(kName, bus.address()).start({}), ApplicationInstance::kOnly); }
  ApplicationService next(kName, bus.address());
  EXPECT_EQ(next.start({}), ApplicationInstance::kOnly);
}

TEST(ApplicationServiceWithoutBus, RunsWithoutKnowing) {
  ApplicationService alone(kName, "unix:path=/nonexistent/bus");
  EXPECT_EQ(alone.start({}), ApplicationInstance::kUnknown);
  EXPECT_EQ(alone.descriptor(), -1);
  EXPECT_FALSE(alone.process());
}

TEST_F(ApplicationServiceTest, NoticesTheEndOfTheBus) {
  ApplicationService first(kName, bus.address());
  ASSERT_EQ(first.start({}), ApplicationInstance::kOnly);
  bus.stop();
  pollfd readable{first.descriptor(), POLLIN, 0};
  EXPECT_EQ(poll(&readable, 1, 5000), 1);
  while (first.process()) {
    ASSERT_EQ(poll(&readable, 1, 5000), 1);
  }
  EXPECT_FALSE(first.process());
}

TEST(TakeActivation, LeavesNothingForChildren) {
  const ScopedEnvironment token("XDG_ACTIVATION_TOKEN", "t");
  const ScopedEnvironment startup("DESKTOP_STARTUP_ID", "s");
  const Activation taken = takeActivation();
  EXPECT_EQ(taken.token, "t");
  EXPECT_EQ(taken.startupId, "s");
  EXPECT_EQ(std::getenv("XDG_ACTIVATION_TOKEN"), nullptr);
  EXPECT_EQ(std::getenv("DESKTOP_STARTUP_ID"), nullptr);
}

}  // namespace
}  // namespace veltrix::testing
