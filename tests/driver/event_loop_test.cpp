#include "driver/event_loop.h"

#include <gtest/gtest.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <ctime>
#include <functional>
#include <utility>
#include <vector>

namespace veltrix {
namespace {

class Port final : public PollHandler {
 public:
  explicit Port(bool isReady = true) : fFile(eventfd(isReady ? 1 : 0, EFD_NONBLOCK | EFD_CLOEXEC)) {}
  explicit Port(FileDescriptor file) : fFile(std::move(file)) {}
  int descriptor() const { return fFile.get(); }
  void ready(std::uint32_t events) noexcept override {
    ++calls;
    EXPECT_NE(events & EPOLLIN, 0U);
    std::uint64_t value = 0;
    EXPECT_GT(::read(fFile.get(), &value, sizeof value), 0);
    if (then)
      then();
  }

  int calls = 0;
  std::function<void()> then;

 private:
  FileDescriptor fFile;
};

class EventLoopTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(loop.start()); }
  Microseconds soon() const { return loop.now() + Microseconds{1000}; }

  EventLoop loop;
};

TEST_F(EventLoopTest, CallsWhoeverIsReady) {
  Port one;
  Port other(false);
  ASSERT_TRUE(loop.add(one.descriptor(), EPOLLIN, one));
  ASSERT_TRUE(loop.add(other.descriptor(), EPOLLIN, other));
  EXPECT_TRUE(loop.waitUntil(kNever));
  EXPECT_EQ(one.calls, 1);
  EXPECT_EQ(other.calls, 0);
}

TEST_F(EventLoopTest, ReturnsAtTheDeadline) {
  const Microseconds deadline = soon();
  while (loop.now() < deadline) ASSERT_TRUE(loop.waitUntil(deadline));
  EXPECT_GE(loop.now(), deadline);
}

TEST_F(EventLoopTest, ADeadlineThatIsOverDoesNotKeepItWaiting) {
  EXPECT_TRUE(loop.waitUntil(Microseconds{0}));
  EXPECT_TRUE(loop.waitUntil(Microseconds{0}));
  EXPECT_TRUE(loop.waitUntil(loop.now()));
}

// Else it would never sleep again.
TEST_F(EventLoopTest, ADeadlineThatHasPassedWakesItOnce) {
  EXPECT_TRUE(loop.waitUntil(soon()));
  Port later(FileDescriptor(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)));
  const itimerspec soonAfter{.it_interval = {}, .it_value = {.tv_sec = 0, .tv_nsec = 5'000'000}};
  ASSERT_EQ(timerfd_settime(later.descriptor(), 0, &soonAfter, nullptr), 0);
  ASSERT_TRUE(loop.add(later.descriptor(), EPOLLIN, later));
  EXPECT_TRUE(loop.waitUntil(kNever));
  EXPECT_EQ(later.calls, 1);
}

TEST_F(EventLoopTest, WhoIsRemovedIsNotCalledAnyMore) {
  Port one;
  Port other;
  one.then = [&] { loop.remove(other.descriptor()); };
  other.then = [&] { loop.remove(one.descriptor()); };
  ASSERT_TRUE(loop.add(one.descriptor(), EPOLLIN, one));
  ASSERT_TRUE(loop.add(other.descriptor(), EPOLLIN, other));
  EXPECT_TRUE(loop.waitUntil(kNever));
  EXPECT_EQ(one.calls + other.calls, 1);
}

TEST_F(EventLoopTest, ANumberThatIsUsedAgainIsNotTakenForTheOldOne) {
  Port one;
  Port other;
  Port next(false);
  one.then = [&] {
    loop.remove(other.descriptor());
    ASSERT_EQ(dup2(next.descriptor(), other.descriptor()), other.descriptor());
    ASSERT_TRUE(loop.add(other.descriptor(), EPOLLIN, next));
  };
  ASSERT_TRUE(loop.add(one.descriptor(), EPOLLIN, one));
  ASSERT_TRUE(loop.add(other.descriptor(), EPOLLIN, other));
  EXPECT_TRUE(loop.waitUntil(kNever));
  EXPECT_EQ(one.calls, 1);
  EXPECT_EQ(other.calls + next.calls, 0);
  loop.remove(other.descriptor());
}

TEST_F(EventLoopTest, HandlersMayAddOthers) {
  std::vector<Port> many(40);
  Port one;
  one.then = [&] {
    for (Port& port : many) ASSERT_TRUE(loop.add(port.descriptor(), EPOLLIN, port));
  };
  ASSERT_TRUE(loop.add(one.descriptor(), EPOLLIN, one));
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(loop.waitUntil(soon()));
  for (const Port& port : many) EXPECT_EQ(port.calls, 1);
}

TEST_F(EventLoopTest, ToldOfABadDescriptorItSaysSo) {
  Port port;
  const Status added = loop.add(-1, EPOLLIN, port);
  ASSERT_FALSE(added);
  EXPECT_EQ(added.error().code, EBADF);
  loop.remove(-1);
  loop.remove(12345);
}

}  // namespace
}  // namespace veltrix
