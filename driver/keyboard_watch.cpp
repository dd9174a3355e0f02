#include "driver/keyboard_watch.h"

#include "driver/keyboard.h"

namespace veltrix {

KeyboardWatch::KeyboardWatch(PollLoop& loop) : fLoop(loop) {}
KeyboardWatch::~KeyboardWatch() = default;

void KeyboardWatch::add(const std::string& id, const std::string& node) {
  std::unique_ptr<Keyboard>& keyboard = fKeyboards[id];
  keyboard = std::make_unique<Keyboard>(fLoop, *this, node);
  if (fWanted)
    keyboard->open();
  update();
}

void KeyboardWatch::remove(const std::string& id) {
  if (fKeyboards.erase(id) > 0)
    update();
}

void KeyboardWatch::watch(bool wanted) noexcept {
  if (wanted == fWanted)
    return;
  fWanted = wanted;
  for (const auto& [id, keyboard] : fKeyboards) wanted ? keyboard->open() : keyboard->close();
  update();
}

void KeyboardWatch::update() noexcept {
  std::uint8_t held = 0;
  for (const auto& [id, keyboard] : fKeyboards) held |= keyboard->held();
  if (held == fHeld)
    return;
  fHeld = held;
  if (fListener != nullptr)
    fListener->modifiersChanged(held);
}

}  // namespace veltrix
