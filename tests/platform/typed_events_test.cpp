#include "platform/typed_events.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace veltrix {
namespace {

constexpr std::uint32_t kType = 0x56584474;
constexpr std::array<std::byte, 4> kFourBytes = {std::byte{1}, std::byte{2}, std::byte{3}, std::byte{4}};

TEST(EventAddress, NamesTheApplicationOrOneProcessOfIt) {
  EXPECT_EQ(EventAddress("VeltrixPane").busName(), "com.aldmoor.VeltrixPane");
  EXPECT_EQ(EventAddress("VeltrixHelper", {.startTime = 9, .pid = 4711}).busName(),
            "com.aldmoor.VeltrixHelper.p4711");
}

TEST(EventParameter, MissingOneCannotBeRead) {
  std::array<std::byte, 4> buffer{std::byte{7}};
  std::size_t size = 99;
  EXPECT_EQ(EventParameter().read(kDirectParameter, kType, buffer.data(), buffer.size(), &size),
            kEventParameterMissing);
  EXPECT_EQ(EventParameter(1, kType, kFourBytes).read(kDirectParameter, kType, buffer.data(), 4, &size),
            kEventParameterMissing);
  EXPECT_EQ(buffer[0], std::byte{7});
  EXPECT_EQ(size, 99U);
}

TEST(EventParameter, OneOfAnotherTypeCannotBeRead) {
  std::array<std::byte, 4> buffer{};
  EXPECT_EQ(EventParameter(kDirectParameter, kType, kFourBytes)
                .read(kDirectParameter, kType + 1, buffer.data(), buffer.size(), nullptr),
            kEventCoercionFailed);
  EXPECT_EQ(buffer[0], std::byte{0});
}

TEST(EventParameter, ReadingStopsAtTheCapacityAndReportsTheWholeSize) {
  std::array<std::byte, 4> buffer{};
  std::size_t size = 0;
  const EventParameter parameter(kDirectParameter, kType, kFourBytes);
  EXPECT_EQ(parameter.read(kDirectParameter, kType, buffer.data(), 2, &size), 0);
  EXPECT_EQ(size, 4U);
  EXPECT_EQ(buffer, (std::array<std::byte, 4>{std::byte{1}, std::byte{2}, std::byte{0}, std::byte{0}}));
}

TEST(EventParameter, EmptyOneIsThere) {
  std::size_t size = 99;
  EXPECT_EQ(EventParameter(kDirectParameter, kType, {}).read(kDirectParameter, kType, nullptr, 0, &size), 0);
  EXPECT_EQ(size, 0U);
}

TEST(Event, TakesUpTo64KibAndKeepsItsParameterWhenTheNextIsTooLarge) {
  Event event(EventAddress("VeltrixPane"), 1, 2);
  const std::vector<std::byte> large(kMaximumEventBytes + 1);
  EXPECT_EQ(event.putParameter(kDirectParameter, kType, std::span(large).first(kMaximumEventBytes)), 0);
  EXPECT_EQ(event.putParameter(kDirectParameter, kType, large), kEventParameterError);
  EXPECT_EQ(event.parameter().data().size(), kMaximumEventBytes);
}

}  // namespace
}  // namespace veltrix
