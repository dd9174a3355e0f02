#pragma once

#include <map>
#include <string>

#include "driver/event_mask.h"
#include "driver/key_press_source.h"
#include "util/file_descriptor.h"

namespace veltrix {

// Looks at which keys of the keyboards are down, while it is asked to, and compares that with what was down
// before. No event is delivered to it, and nothing is kept of what it sees beyond that comparison. A keyboard
// that cannot be opened does not count.
class KeyPressWatch final : public KeyPressSource {
 public:
  // `id` is of the caller's choice; `node` is the path of the event node.
  void add(const std::string& id, const std::string& node);
  void remove(const std::string& id) { fKeyboards.erase(id); }

  void begin() noexcept override;
  bool keyWentDown() noexcept override;
  void end() noexcept override;

 private:
  using Keys = EventBitmap<KEY_CNT>;
  struct Keyboard {
    std::string node;
    FileDescriptor file;  // while it is watched
    Keys down{};          // since begin(), all the time
  };

  static void open(Keyboard& keyboard) noexcept;
  static bool wentDown(Keyboard& keyboard) noexcept;

  bool fWatching = false;
  std::map<std::string, Keyboard> fKeyboards;
};

}  // namespace veltrix
