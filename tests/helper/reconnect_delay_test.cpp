#include "helper/reconnect_delay.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

using std::chrono::milliseconds;

TEST(ReconnectDelay, DoublesUpToItsEnd) {
  ReconnectDelay delay;
  for (const int expected : {250, 500, 1000, 2000, 4000, 5000, 5000}) {
    EXPECT_EQ(delay.next(), milliseconds(expected));
  }
}

TEST(ReconnectDelay, BeginsAnewWhenThereIsReasonToHope) {
  ReconnectDelay delay;
  delay.next();
  delay.next();
  delay.reset();
  EXPECT_EQ(delay.next(), milliseconds(250));
}

TEST(ReconnectDelay, BeginsAnewAfterAConnectionThatHeld) {
  ReconnectDelay delay;
  delay.next();
  delay.next();
  EXPECT_EQ(delay.next(milliseconds(999)), milliseconds(1000));
  EXPECT_EQ(delay.next(milliseconds(1000)), milliseconds(250));
  EXPECT_EQ(delay.next(), milliseconds(500));
}

}  // namespace
}  // namespace veltrix
