#pragma once

namespace veltrix {

// Knows whether somebody uses a keyboard, and not which key it is.
class KeyPressSource {
 public:
  virtual ~KeyPressSource() = default;
  // From now on keys count that go down. Those that are down already do not until they come up, but for
  // modifier keys, with which every key would mean something else.
  virtual void begin() noexcept = 0;
  // Whether such a key is down. Only between begin() and end().
  virtual bool keyWentDown() noexcept = 0;
  virtual void end() noexcept = 0;
};

}  // namespace veltrix
