#include "driver/key_press_watch.h"

#include <fcntl.h>

#include <utility>

#include "driver/held_modifiers.h"

namespace veltrix {

namespace {

// Asking for the keys throws away the events of keys that wait to be read, so that no descriptor serves both.
bool readKeys(int descriptor, EventBitmap<KEY_CNT>& keys) noexcept {
  keys = {};
  return ioctl(descriptor, EVIOCGKEY(sizeof keys), keys.data()) >= 0;
}

void forgetModifiers(EventBitmap<KEY_CNT>& keys) noexcept {
  for (const ModifierKey& key : kModifierKeys) {
    if (key.held != kHeldCapsLock)
      keys[key.code / kBitmapWordBits] &= ~(1UL << key.code % kBitmapWordBits);
  }
}

}  // namespace

void KeyPressWatch::add(const std::string& id, const std::string& node) {
  Keyboard& keyboard = fKeyboards[id];
  keyboard.node = node;
  keyboard.file.reset();
  if (fWatching)
    open(keyboard);
}

void KeyPressWatch::begin() noexcept {
  fWatching = true;
  for (auto& [id, keyboard] : fKeyboards) open(keyboard);
}

bool KeyPressWatch::keyWentDown() noexcept {
  bool anyWent = false;
  for (auto& [id, keyboard] : fKeyboards) anyWent = wentDown(keyboard) || anyWent;
  return anyWent;
}

void KeyPressWatch::end() noexcept {
  fWatching = false;
  for (auto& [id, keyboard] : fKeyboards) keyboard.file.reset(), keyboard.down = {};
}

void KeyPressWatch::open(Keyboard& keyboard) noexcept {
  constexpr EventBitmap<EV_CNT> kNothing = {};
  FileDescriptor file(::open(keyboard.node.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (file && setEventMask(file.get(), 0, kNothing) && readKeys(file.get(), keyboard.down)) {
    forgetModifiers(keyboard.down);
    keyboard.file = std::move(file);
  }
}

bool KeyPressWatch::wentDown(Keyboard& keyboard) noexcept {
  Keys now{};
  if (!keyboard.file || !readKeys(keyboard.file.get(), now))
    return false;
  bool went = false;
  for (std::size_t word = 0; word < now.size(); ++word) {
    went = went || (now[word] & ~keyboard.down[word]) != 0;
    keyboard.down[word] &= now[word];
  }
  return went;
}

}  // namespace veltrix
