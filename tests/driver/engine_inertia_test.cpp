// Rolling on, as far as buttons, keys and the device end it.
#include "tests/driver/engine_fixture.h"

namespace veltrix {
namespace {

using ::testing::IsEmpty;

class EngineInertia : public test::EngineTest {
 protected:
  // Turns quickly enough to roll on.
  void spin() {
    for (int detent = 0; detent < 4; ++detent) {
      turn(120);
      wait(20);
    }
    ASSERT_NE(fEngine.deadline(), kNever);
    taken();
  }
  static DriverRecord rollingRecord() {
    DriverRecord record = emptyRecord();
    record.inertialScroll = 1;
    return record;
  }
};

TEST_F(EngineInertia, RollsOnAfterAQuickTurn) {
  apply(rollingRecord(), kRollsOn);
  spin();
  wait(2000);
  EXPECT_FALSE(taken().empty());
  EXPECT_EQ(fEngine.deadline(), kNever);
}

TEST_F(EngineInertia, StopsRollingWithAnyButtonEvenOneWithoutAnAction) {
  apply(rollingRecord(), kRollsOn);
  spin();
  press(5);
  EXPECT_EQ(fEngine.deadline(), kNever);
  wait(2000);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(EngineInertia, StopsRollingWithAButtonThatWaitsForItsChord) {
  DriverRecord record = rollingRecord();
  record.action[kChordOfFirstTwo] = RecordAction{3, 0, 0, 0};
  apply(record, kRollsOn);
  spin();
  press(0);
  EXPECT_EQ(fEngine.deadline(), fNow + kChordTime);
}

TEST_F(EngineInertia, StopsRollingWithAModifierKey) {
  apply(rollingRecord(), kRollsOn);
  spin();
  fEngine.modifiersChanged(kHeldShift);
  EXPECT_EQ(fEngine.deadline(), kNever);
}

TEST_F(EngineInertia, EndsWithTheDevice) {
  DriverRecord record = emptyRecord();
  record.inertialScroll = 1;
  apply(record, kRollsOn);
  fEngine.release(fNow, fOutput);
  EXPECT_EQ(fEngine.deadline(), kNever);
}

}  // namespace
}  // namespace veltrix
