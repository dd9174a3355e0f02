#include "driver/group_writer.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "tests/driver/driver_fakes.h"
#include "util/file_descriptor.h"

namespace veltrix {
namespace {

using ::testing::ElementsAre;
using Written = std::vector<OutputEvent>;

// A device that remembers what each write brought.
class FakeDevice {
 public:
  FakeDevice() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe2(ends, O_DIRECT | O_NONBLOCK | O_CLOEXEC), 0);
    fRead.reset(ends[0]);
    fWrite.reset(ends[1]);
  }
  int descriptor() const { return fWrite.get(); }
  void breakDown() { fRead.reset(); }

  std::vector<Written> writes() {
    std::vector<Written> result;
    std::array<input_event, 256> events{};
    ssize_t size = 0;
    while ((size = ::read(fRead.get(), events.data(), sizeof events)) > 0) {
      EXPECT_EQ(static_cast<std::size_t>(size) % sizeof(input_event), 0U);
      Written written;
      for (std::size_t i = 0; i < static_cast<std::size_t>(size) / sizeof(input_event); ++i)
        written.push_back({events[i].type, events[i].code, events[i].value});
      result.push_back(written);
    }
    return result;
  }

 private:
  FileDescriptor fRead;
  FileDescriptor fWrite;
};

class GroupWriterTest : public ::testing::Test {
 protected:
  FakeDevice keyboard;
  FakeDevice pointer;
  GroupWriter writer{keyboard.descriptor(), pointer.descriptor()};
};

TEST_F(GroupWriterTest, EachDeviceGetsItsPartWithOneWrite) {
  const Written group = {keyEvent(KEY_LEFTCTRL, true), keyEvent(BTN_LEFT, true), relativeEvent(REL_X, 2),
                         kSync};
  EXPECT_EQ(writer.write(group), 0);
  EXPECT_THAT(keyboard.writes(), ElementsAre(Written{keyEvent(KEY_LEFTCTRL, true), kSync}));
  EXPECT_THAT(pointer.writes(),
              ElementsAre(Written{keyEvent(BTN_LEFT, true), relativeEvent(REL_X, 2), kSync}));
}

TEST_F(GroupWriterTest, GroupsOfOneDeviceAreWrittenTogether) {
  const Written groups = {keyEvent(BTN_LEFT, true), kSync, keyEvent(BTN_LEFT, false), kSync};
  EXPECT_EQ(writer.write(groups), 0);
  EXPECT_THAT(keyboard.writes(), ::testing::IsEmpty());
  EXPECT_THAT(pointer.writes(), ElementsAre(groups));
}

TEST_F(GroupWriterTest, NothingOvertakesWhatWasForTheOtherDevice) {
  const Written groups = {relativeEvent(REL_X, 1), kSync, keyEvent(KEY_A, true), kSync,
                          relativeEvent(REL_X, 2), kSync};
  EXPECT_EQ(writer.write(groups), 0);
  EXPECT_EQ(keyboard.writes().size(), 1U);
  EXPECT_THAT(pointer.writes(),
              ElementsAre(Written{relativeEvent(REL_X, 1), kSync}, Written{relativeEvent(REL_X, 2), kSync}));
}

TEST_F(GroupWriterTest, AnyNumberOfGroupsArrives) {
  Written groups;
  for (int i = 0; i < 400; ++i) {
    groups.push_back(relativeEvent(REL_Y, i + 1));
    groups.push_back(kSync);
  }
  EXPECT_EQ(writer.write(groups), 0);
  Written arrived;
  for (const Written& written : pointer.writes())
    arrived.insert(arrived.end(), written.begin(), written.end());
  EXPECT_EQ(arrived, groups);
}

TEST_F(GroupWriterTest, TellsThatADeviceIsGone) {
  std::signal(SIGPIPE, SIG_IGN);
  pointer.breakDown();
  const Written groups = {relativeEvent(REL_X, 1), kSync};
  EXPECT_EQ(writer.write(groups), EPIPE);
  // The next one is tried again.
  EXPECT_EQ(writer.write(Written{keyEvent(KEY_A, true), kSync}), 0);
  EXPECT_EQ(keyboard.writes().size(), 1U);
}

}  // namespace
}  // namespace veltrix
