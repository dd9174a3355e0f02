// Sends reports of a trackball and takes the time until each comes out of a virtual pointer.
//
// usage: path_meter UHID_DESCRIPTOR NODE RATE COUNT PID...
//
// The trackball behind the descriptor has reports of 16 bits of buttons, X and Y of 16 bits, wheel and tilt
// of 8 bits; NODE is the event node of the pointer. RATE is in reports a second, 0 for each as soon as the
// last one came out. Prints of COUNT reports, or of what comes in a few seconds: how many came a second, the
// median and the 99th percentile of the microseconds from before the write to after the read, and the
// microseconds of processor time that the processes PID... took for each report.
#include <fcntl.h>
#include <linux/input.h>
#include <linux/uhid.h>
#include <poll.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <deque>
#include <utility>
#include <vector>

#include "util/file_descriptor.h"

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kPatience = 5 * kSecond;
constexpr std::int64_t kLongest = 4 * kSecond;
// Fewer than the kernel keeps for a slow reader, so that none is lost.
constexpr std::size_t kMostUnderway = 16;
constexpr std::size_t kWarmUp = 50;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "path_meter: %s: %s\n", what, std::strerror(errno));
  std::exit(1);
}

std::int64_t nanoseconds(clockid_t clock) {
  timespec time{};
  if (clock_gettime(clock, &time) < 0)
    fail("clock of a process");
  return std::int64_t{time.tv_sec} * kSecond + time.tv_nsec;
}

std::int64_t now() {
  return nanoseconds(CLOCK_MONOTONIC);
}

class Meter {
 public:
  Meter(int trackball, int pointer, std::int64_t rate, std::size_t count, std::vector<clockid_t> clocks)
      : fTrackball(trackball),
        fPointer(pointer),
        fPeriod(rate > 0 ? kSecond / rate : 0),
        fCount(count),
        fClocks(std::move(clocks)) {}

  void run() {
    fDue = now();
    while (fLatencies.size() < fCount && (fLatencies.empty() || fEnded - fBegan < kLongest)) {
      sendWhenDue();
      waitForPointer();
    }
    fProcessorTime = processorTime() - fProcessorTime;
  }

  void print() {
    std::sort(fLatencies.begin(), fLatencies.end());
    const auto count = static_cast<double>(fLatencies.size());
    std::printf("%.1f %.2f %.2f %.3f\n", count * 1e9 / static_cast<double>(fEnded - fBegan), percentile(50),
                percentile(99), static_cast<double>(fProcessorTime) / count / 1000);
  }

 private:
  double percentile(std::size_t percent) const {
    return static_cast<double>(fLatencies[(fLatencies.size() - 1) * percent / 100]) / 1000;
  }

  std::int64_t processorTime() const {
    std::int64_t sum = 0;
    for (const clockid_t clock : fClocks) sum += nanoseconds(clock);
    return sum;
  }

  // A device whose report is late does not hurry up with the next ones.
  void sendWhenDue() {
    const std::int64_t time = now();
    const std::size_t most = fPeriod > 0 ? kMostUnderway : 1;
    if (time < fDue || fUnderway.size() >= most)
      return;
    fUnderway.push_back(time);
    fDue = std::max(fDue, time - fPeriod) + fPeriod;
    uhid_event event{};
    event.type = UHID_INPUT2;
    const std::array<std::uint8_t, 8> report{0, 0, 6, 0, 4, 0, 0, 0};
    event.u.input2.size = report.size();
    std::memcpy(event.u.input2.data, report.data(), report.size());
    const std::size_t size = offsetof(uhid_event, u.input2.data) + report.size();
    if (write(fTrackball, &event, size) < 0)
      fail("the trackball");
  }

  void waitForPointer() {
    const bool maySendMore = fPeriod > 0 && fUnderway.size() < kMostUnderway;
    const std::int64_t wait = maySendMore ? std::max<std::int64_t>(fDue - now(), 0) : kPatience;
    const timespec limit{wait / kSecond, wait % kSecond};
    pollfd poll{fPointer, POLLIN, 0};
    const int ready = ppoll(&poll, 1, &limit, nullptr);
    if (ready > 0)
      return readPointer();
    if (ready == 0 && !fUnderway.empty() && now() - fUnderway.front() > kPatience) {
      errno = ETIMEDOUT;
      fail("a report did not come out");
    }
  }

  // Some programs give out each axis as a group of its own, so the X of a report stands for it.
  void readPointer() {
    std::array<input_event, 64> events{};
    const ssize_t size = read(fPointer, events.data(), sizeof events);
    if (size < 0)
      fail("the pointer");
    const std::int64_t time = now();
    for (std::size_t i = 0; i < static_cast<std::size_t>(size) / sizeof(input_event); ++i) {
      fGroupHasX = fGroupHasX || (events[i].type == EV_REL && events[i].code == REL_X);
      if (events[i].type != EV_SYN)
        continue;
      if (fGroupHasX)
        reportCame(time);
      fGroupHasX = false;
    }
  }

  void reportCame(std::int64_t time) {
    if (fUnderway.empty()) {
      errno = EPROTO;
      fail("more came out than went in");
    }
    const std::int64_t sent = fUnderway.front();
    fUnderway.pop_front();
    if (fWarmUp > 0) {
      if (--fWarmUp == 0) {
        fBegan = time;
        fProcessorTime = processorTime();
      }
      return;
    }
    fLatencies.push_back(time - sent);
    fEnded = time;
  }

  int fTrackball;
  int fPointer;
  std::int64_t fPeriod;
  std::size_t fCount;
  std::vector<clockid_t> fClocks;
  std::deque<std::int64_t> fUnderway;  // when they were sent
  std::vector<std::int64_t> fLatencies;
  std::size_t fWarmUp = kWarmUp;
  std::int64_t fDue = 0;
  std::int64_t fBegan = 0;
  std::int64_t fEnded = 0;
  std::int64_t fProcessorTime = 0;
  bool fGroupHasX = false;
};

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount < 5) {
    std::fprintf(stderr, "usage: path_meter UHID_DESCRIPTOR NODE RATE COUNT PID...\n");
    return 2;
  }
  std::vector<clockid_t> clocks;
  for (int i = 5; i < argumentCount; ++i) {
    clockid_t clock = 0;
    errno = clock_getcpuclockid(std::atoi(arguments[i]), &clock);
    if (errno != 0)
      fail(arguments[i]);
    clocks.push_back(clock);
  }
  const veltrix::FileDescriptor pointer(open(arguments[2], O_RDONLY | O_CLOEXEC));
  if (!pointer)
    fail(arguments[2]);
  // The timer that keeps the pace is else up to 50 microseconds late.
  prctl(PR_SET_TIMERSLACK, 1);
  Meter meter(std::atoi(arguments[1]), pointer.get(), std::atoll(arguments[3]),
              static_cast<std::size_t>(std::atoll(arguments[4])), std::move(clocks));
  meter.run();
  meter.print();
  return 0;
}
