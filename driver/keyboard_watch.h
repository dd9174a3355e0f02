#pragma once

#include <map>
#include <memory>
#include <string>

#include "driver/modifier_source.h"
#include "driver/poll_loop.h"

namespace veltrix {

class Keyboard;

// Listens to the modifier keys of all keyboards, and to nothing else of them.
class KeyboardWatch final : public ModifierSource {
 public:
  // The loop must outlive the watch.
  explicit KeyboardWatch(PollLoop& loop);
  ~KeyboardWatch() override;
  KeyboardWatch(const KeyboardWatch&) = delete;
  KeyboardWatch& operator=(const KeyboardWatch&) = delete;

  // To be set before anything else; null for nobody.
  void setListener(ModifierListener* listener) noexcept { fListener = listener; }

  // `id` is of the caller's choice; `node` is the path of the event node.
  void add(const std::string& id, const std::string& node);
  void remove(const std::string& id);

  void watch(bool wanted) noexcept override;

  // Called by the keyboards when theirs may have changed.
  void update() noexcept;

 private:
  PollLoop& fLoop;
  ModifierListener* fListener = nullptr;
  bool fWanted = false;
  std::uint8_t fHeld = 0;
  std::map<std::string, std::unique_ptr<Keyboard>> fKeyboards;
};

}  // namespace veltrix
