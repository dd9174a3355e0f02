#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace veltrix {

class LoopThread;

// A trackball as the driver sees it; the condition as the helper writes it ("taken", "busy" …).
struct DriverStatusDevice {
  std::uint16_t vendor = 0;
  std::uint16_t product = 0;
  std::uint16_t version = 0;
  std::string condition;
  int error = 0;  // an errno with "failed" and "busy"

  friend bool operator==(const DriverStatusDevice& a, const DriverStatusDevice& b) = default;
};

// What the helper says of the driver; the state as it writes it ("connected", "not-installed" …).
struct DriverStatus {
  bool helperRuns = false;  // when it does not, there is nothing else
  std::string state;
  std::string version;
  int error = 0;  // an errno with "unreachable"
  std::vector<DriverStatusDevice> devices;

  friend bool operator==(const DriverStatus& a, const DriverStatus& b) = default;
};

using DriverStatusConsumer = std::function<void(const DriverStatus&)>;

// Follows what the helper says of the driver, whether the helper runs or not, on a thread of its own. Without
// a bus nothing is told.
class DriverStatusWatch {
 public:
  // The consumer is called on that thread: first with what is found, then at each change.
  explicit DriverStatusWatch(DriverStatusConsumer consumer, const std::string& busAddress = {});
  // The consumer is not called any more when this returns.
  ~DriverStatusWatch();
  DriverStatusWatch(const DriverStatusWatch&) = delete;
  DriverStatusWatch& operator=(const DriverStatusWatch&) = delete;

 private:
  std::unique_ptr<LoopThread> fThread;
};

}  // namespace veltrix
